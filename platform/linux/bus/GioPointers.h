#pragma once

#include <gio/gio.h>

#include <memory>

namespace quillon {

struct ObjectUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
struct VariantUnref
{
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
};
struct GFree
{
    void operator()(gpointer memory) const { g_free(memory); }
};
struct ErrorFree
{
    void operator()(GError *error) const { g_error_free(error); }
};
struct StringListFree
{
    void operator()(char **list) const { g_strfreev(list); }
};

/// A counted reference to an object of GIO, or null.
template <typename T>
using ObjectRef = std::unique_ptr<T, ObjectUnref>;
using VariantRef = std::unique_ptr<GVariant, VariantUnref>;
using GString8 = std::unique_ptr<char, GFree>;
using ErrorRef = std::unique_ptr<GError, ErrorFree>;
/// Owns strings with a null pointer after the last one.
using StringList = std::unique_ptr<char *, StringListFree>;

} // namespace quillon
