#include "platform/linux/windows/Wayland.h"

#include <QGuiApplication>
#include <QWindow>

#include <LayerShellQt/Window>
#include <wayland-client.h>
#include <xdg-activation-v1-client-protocol.h>

#include <cstring>
#include <memory>

#include <unistd.h>

namespace quillon::wayland {

namespace {

constexpr const char *LAYER_SHELL = "zwlr_layer_shell_v1";

struct Delete
{
    void operator()(wl_display *display) const { wl_display_disconnect(display); }
    void operator()(wl_event_queue *queue) const { wl_event_queue_destroy(queue); }
    void operator()(wl_registry *registry) const { wl_registry_destroy(registry); }
    void operator()(wl_keyboard *keyboard) const
    {
        if (wl_keyboard_get_version(keyboard) >= WL_KEYBOARD_RELEASE_SINCE_VERSION)
            wl_keyboard_release(keyboard);
        else
            wl_keyboard_destroy(keyboard);
    }
    void operator()(xdg_activation_token_v1 *token) const
    {
        xdg_activation_token_v1_destroy(token);
    }
};
template <typename T>
using Ref = std::unique_ptr<T, Delete>;

/// Deletes what only changes the queue of another object's new objects.
struct DeleteWrapper
{
    void operator()(void *wrapper) const { wl_proxy_wrapper_destroy(wrapper); }
};
template <typename T>
using Wrapper = std::unique_ptr<T, DeleteWrapper>;

/// Returns the object in a form whose new objects have their events in the queue.
template <typename T>
Wrapper<T> inQueue(T *object, wl_event_queue *queue)
{
    auto *wrapper = static_cast<T *>(wl_proxy_create_wrapper(object));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    return Wrapper<T>(wrapper);
}

/// Holds what the compositor offers. A name of zero means that the compositor lacks it.
struct Globals
{
    bool hasLayerShell = false;
    std::uint32_t activationName = 0;
};

constexpr wl_registry_listener REGISTRY_LISTENER{
    .global =
        [](void *data, wl_registry *, std::uint32_t name, const char *interface, std::uint32_t) {
            auto *globals = static_cast<Globals *>(data);
            if (std::strcmp(interface, LAYER_SHELL) == 0)
                globals->hasLayerShell = true;
            else if (std::strcmp(interface, xdg_activation_v1_interface.name) == 0)
                globals->activationName = name;
        },
    .global_remove = [](void *, wl_registry *, std::uint32_t) {}};

/// A keyboard reports the surface that has it as soon as it is asked for.
constexpr wl_keyboard_listener KEYBOARD_LISTENER{
    .keymap = [](void *, wl_keyboard *, std::uint32_t, int map, std::uint32_t) { close(map); },
    .enter = [](void *data, wl_keyboard *, std::uint32_t, wl_surface *surface,
                wl_array *) { *static_cast<wl_surface **>(data) = surface; },
    .leave = [](void *data, wl_keyboard *, std::uint32_t,
                wl_surface *) { *static_cast<wl_surface **>(data) = nullptr; },
    .key = [](void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
    .modifiers = [](void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t,
                    std::uint32_t, std::uint32_t) {},
    .repeat_info = [](void *, wl_keyboard *, std::int32_t, std::int32_t) {}};

constexpr xdg_activation_token_v1_listener TOKEN_LISTENER{
    .done = [](void *data, xdg_activation_token_v1 *, const char *token) {
        *static_cast<std::string *>(data) = token;
    }};

/// Returns the compositor's service for activation tokens, or null when it has none. The service
/// lives as long as the connection.
xdg_activation_v1 *activation(wl_display *display)
{
    const Ref<wl_event_queue> queue(wl_display_create_queue(display));
    const Ref<wl_registry> registry(wl_display_get_registry(inQueue(display, queue.get()).get()));
    Globals globals;
    wl_registry_add_listener(registry.get(), &REGISTRY_LISTENER, &globals);
    wl_display_roundtrip_queue(display, queue.get());
    if (globals.activationName == 0)
        return nullptr;
    auto *activation = static_cast<xdg_activation_v1 *>(
        wl_registry_bind(registry.get(), globals.activationName, &xdg_activation_v1_interface, 1));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(activation), nullptr);
    return activation;
}

} // namespace

bool hasPanels()
{
    // A connection that was handed over serves only the first who takes it, which is the toolkit.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
        !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return false;
    const Ref<wl_display> display(wl_display_connect(nullptr));
    if (!display)
        return false;
    Globals globals;
    const Ref<wl_registry> registry(wl_display_get_registry(display.get()));
    wl_registry_add_listener(registry.get(), &REGISTRY_LISTENER, &globals);
    wl_display_roundtrip(display.get());
    return globals.hasLayerShell;
}

bool makePanel(QWindow &window)
{
    if (!qApp->nativeInterface<QNativeInterface::QWaylandApplication>() || !hasPanels())
        return false;
    using LayerShellQt::Window;
    Window *panel = Window::get(&window);
    panel->setScope(QStringLiteral("quillon"));
    panel->setLayer(Window::LayerOverlay);
    panel->setAnchors(Window::AnchorTop);
    // With "on demand" some compositors take the keyboard away at the next change of the panel.
    panel->setKeyboardInteractivity(Window::KeyboardInteractivityExclusive);
    panel->setScreenConfiguration(Window::ScreenFromCompositor);
    return true;
}

void setPanelTop(QWindow &panel, int top)
{
    LayerShellQt::Window::get(&panel)->setMargins({0, top, 0, 0});
}

std::string requestActivationToken()
{
    const auto *application = qApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    // It is an error to ask a seat without a keyboard for one.
    if (!application || !application->keyboard())
        return {};
    wl_display *display = application->display();
    static xdg_activation_v1 *const ACTIVATION = activation(display);
    if (!ACTIVATION)
        return {};
    // The toolkit's own events must not be handled here, so everything has a queue of its own.
    const Ref<wl_event_queue> queue(wl_display_create_queue(display));
    const Ref<wl_keyboard> keyboard(
        wl_seat_get_keyboard(inQueue(application->seat(), queue.get()).get()));
    wl_surface *surface = nullptr;
    wl_keyboard_add_listener(keyboard.get(), &KEYBOARD_LISTENER, &surface);
    wl_display_roundtrip_queue(display, queue.get());
    if (!surface)
        return {};

    const Ref<xdg_activation_token_v1> request(
        xdg_activation_v1_get_activation_token(inQueue(ACTIVATION, queue.get()).get()));
    std::string token;
    xdg_activation_token_v1_add_listener(request.get(), &TOKEN_LISTENER, &token);
    xdg_activation_token_v1_set_serial(request.get(), application->lastInputSerial(),
                                       application->seat());
    xdg_activation_token_v1_set_surface(request.get(), surface);
    xdg_activation_token_v1_commit(request.get());
    wl_display_roundtrip_queue(display, queue.get());
    return token;
}

} // namespace quillon::wayland
