#include "platform/linux/hotkey/SessionHotKey.h"

#include "platform/linux/hotkey/PortalHotKey.h"
#include "platform/linux/hotkey/X11HotKey.h"

#include <QGuiApplication>

namespace quillon {

namespace {

class ImpossibleHotKey : public HotKey
{
public:
    void grab(const KeyCombination &, Receiver receiver) override { receiver(Outcome::impossible); }
    void release() override {}
    void onPressed(std::function<void()>) override {}
    bool isPossible() const override { return false; }
    bool isSilent() const override { return true; }
    std::string keyName(std::uint32_t, std::uint32_t symbol) const override
    {
        return nameOfSymbol(xkb_keysym_to_lower(symbol));
    }
};

} // namespace

std::unique_ptr<HotKey> makeSessionHotKey()
{
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
        qgetenv("XDG_SESSION_TYPE") == QByteArrayLiteral("wayland"))
        return std::make_unique<PortalHotKey>(connection);
    if (connection)
        return std::make_unique<X11HotKey>(connection);
    return std::make_unique<ImpossibleHotKey>();
}

} // namespace quillon
