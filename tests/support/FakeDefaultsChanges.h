#pragma once

#include "platform/DefaultsChanges.h"

namespace quillon {

/// Reports changes when the test says so.
class FakeDefaultsChanges : public DefaultsChanges
{
public:
    void tell() { report(); }
};

} // namespace quillon
