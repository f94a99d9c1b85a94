#include "platform/linux/filemanagers/Accessibility.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace quillon {

namespace {

const Accessibility::Control REGISTRY{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
const std::string ACCESSIBLE = "org.a11y.atspi.Accessible";
const std::string ACTION = "org.a11y.atspi.Action";
/// The bit for "checked" in the first word of a set of states.
constexpr std::uint32_t STATE_CHECKED = 1U << 4;
/// Asks for extents in coordinates of the screen.
constexpr std::uint32_t ON_SCREEN = 0;
constexpr int DEEPEST = 40;

std::string textOf(GVariant *value)
{
    return g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) ? g_variant_get_string(value, nullptr)
                                                              : "";
}

/// Returns the text that a reply consists of, or nothing for every other reply.
std::optional<std::string> onlyText(const VariantRef &reply)
{
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(s)")))
        return std::nullopt;
    const VariantRef text(g_variant_get_child_value(reply.get(), 0));
    return g_variant_get_string(text.get(), nullptr);
}

bool isYes(const VariantRef &reply)
{
    gboolean answer = FALSE;
    if (reply && g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(b)")))
        g_variant_get(reply.get(), "(b)", &answer);
    return answer != FALSE;
}

/// Accessible names of Qt's windows lack the part of the title after the dash.
bool isTitleOf(const std::string &name, const std::string &title)
{
    return name == title || (!name.empty() && title.starts_with(name + " \u2014 "));
}

} // namespace

Accessibility::Accessibility(BusConnection &session)
    : bus_([&session](Deadline deadline) {
          return onlyText(session.call({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus"},
                                       "GetAddress", nullptr, deadline,
                                       BusConnection::Activation::allowed));
      })
{}

VariantRef Accessibility::call(const Control &control, const std::string &interface,
                               const std::string &method, GVariant *arguments, Deadline deadline)
{
    return bus_.call({control.service, control.path, interface}, method, arguments, deadline);
}

std::vector<Accessibility::Control> Accessibility::children(const Control &control,
                                                            Deadline deadline)
{
    std::vector<Control> children;
    const auto reply = call(control, ACCESSIBLE, "GetChildren", nullptr, deadline);
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(a(so))")))
        return children;
    const VariantRef list(g_variant_get_child_value(reply.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
        const char *service = nullptr;
        const char *path = nullptr;
        g_variant_get_child(list.get(), i, "(&s&o)", &service, &path);
        children.push_back({service, path});
    }
    return children;
}

std::string Accessibility::name(const Control &control, Deadline deadline)
{
    const auto name = bus_.property({control.service, control.path, ACCESSIBLE}, "Name", deadline);
    return name ? textOf(name.get()) : "";
}

Accessibility::Role Accessibility::role(const Control &control, Deadline deadline)
{
    const auto reply = call(control, ACCESSIBLE, "GetRole", nullptr, deadline);
    guint32 role = 0;
    if (reply && g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(u)")))
        g_variant_get(reply.get(), "(u)", &role);
    return static_cast<Role>(role);
}

bool Accessibility::isChecked(const Control &control, Deadline deadline)
{
    const auto reply = call(control, ACCESSIBLE, "GetState", nullptr, deadline);
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(au)")))
        return false;
    const VariantRef words(g_variant_get_child_value(reply.get(), 0));
    guint32 first = 0;
    if (g_variant_n_children(words.get()) > 0)
        g_variant_get_child(words.get(), 0, "u", &first);
    return (first & STATE_CHECKED) != 0;
}

std::optional<std::string> Accessibility::text(const Control &control, Deadline deadline)
{
    constexpr int TO_THE_END = -1;
    return onlyText(call(control, "org.a11y.atspi.Text", "GetText",
                         g_variant_new("(ii)", 0, TO_THE_END), deadline));
}

bool Accessibility::setText(const Control &control, const std::string &text, Deadline deadline)
{
    return isYes(call(control, "org.a11y.atspi.EditableText", "SetTextContents",
                      g_variant_new("(s)", text.c_str()), deadline));
}

std::string Accessibility::action(const Control &control, Deadline deadline)
{
    return onlyText(call(control, ACTION, "GetName", g_variant_new("(i)", 0), deadline))
        .value_or("");
}

std::string Accessibility::keyBinding(const Control &control, Deadline deadline)
{
    return onlyText(call(control, ACTION, "GetKeyBinding", g_variant_new("(i)", 0), deadline))
        .value_or("");
}

bool Accessibility::act(const Control &control, Deadline deadline)
{
    return isYes(call(control, ACTION, "DoAction", g_variant_new("(i)", 0), deadline));
}

std::optional<Accessibility::Control> Accessibility::program(pid_t process, Deadline deadline)
{
    for (Control &program : children(REGISTRY, deadline)) {
        if (bus_.process(program.service, deadline) == process)
            return std::move(program);
    }
    return std::nullopt;
}

std::optional<Accessibility::Control>
Accessibility::frame(const DesktopWindow &window, const X11Windows &windows, Deadline deadline)
{
    const auto program = this->program(window.process, deadline);
    if (!program)
        return std::nullopt;
    std::vector<Control> named = children(*program, deadline);
    std::erase_if(named, [&](const Control &frame) {
        return !isTitleOf(name(frame, deadline), window.title);
    });
    if (named.size() < 2)
        return named.empty() ? std::nullopt : std::optional(named.front());
    // Where several windows show folders of the same name, only their places tell them apart.
    const auto box = windows.box(window.id);
    for (const Control &frame : named) {
        const auto reply = call(frame, "org.a11y.atspi.Component", "GetExtents",
                                g_variant_new("(u)", ON_SCREEN), deadline);
        if (!box || !reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("((iiii))")))
            continue;
        X11Windows::Box found;
        g_variant_get(reply.get(), "((iiii))", &found.left, &found.top, &found.width,
                      &found.height);
        if (found == *box)
            return frame;
    }
    return std::nullopt;
}

std::optional<Accessibility::Control>
Accessibility::find(const Control &root, const Visitor &visitor, Deadline deadline, Menus menus)
{
    using enum Role;
    static constexpr std::array LARGE{layeredPane, table,     tree,       treeTable,
                                      list,        statusBar, pageTabList};
    const auto isLeftOut = [&](Role role) {
        return std::ranges::find(LARGE, role) != LARGE.end() ||
               (role == menuBar && menus == Menus::leftOut);
    };
    const std::function<std::optional<Control>(const Control &, int)> search =
        [&](const Control &parent, int depth) -> std::optional<Control> {
        if (depth > DEEPEST || deadline.hasPassed())
            return std::nullopt;
        for (const Control &child : children(parent, deadline)) {
            const Role role = this->role(child, deadline);
            if (visitor(child, role))
                return child;
            if (isLeftOut(role))
                continue;
            if (auto found = search(child, depth + 1))
                return found;
        }
        return std::nullopt;
    };
    return search(root, 0);
}

} // namespace quillon
