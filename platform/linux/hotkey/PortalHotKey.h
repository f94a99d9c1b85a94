#pragma once

#include "platform/HotKey.h"
#include "platform/linux/hotkey/X11Keyboard.h"
#include "platform/linux/session/DesktopPortal.h"

#include <QPointer>

#include <optional>
#include <utility>

namespace quillon {

/// Asks the desktop for the key through org.freedesktop.portal.GlobalShortcuts, which may ask the
/// user. Every grab is a session of its own there, since a session's keys can be bound only once.
/// No call blocks. The outcome is "impossible" where no portal answers.
class PortalHotKey : public QObject, public HotKey
{
    Q_OBJECT

public:
    /// The connection to the X display that the toolkit runs on, or null. It names the keys.
    explicit PortalHotKey(xcb_connection_t *connection);
    ~PortalHotKey() override;

    void grab(const KeyCombination &keys, Receiver receiver) override;
    void release() override;
    void onPressed(std::function<void()> pressed) override { pressed_ = std::move(pressed); }
    bool isPossible() const override { return probe_ != Probe::failed; }
    bool isSilent() const override { return false; }
    std::string keyName(std::uint32_t scanCode, std::uint32_t symbol) const override;

private Q_SLOTS:
    void activated(const QDBusMessage &signal);
    void sessionClosed(const QDBusMessage &signal);

private:
    enum class Probe
    {
        pending,
        answered,
        failed,
    };

    void portalGone();
    void portalCame();
    void registerApplication();
    void probe();
    void makeSession();
    void bindKeys();
    /// Sends a call. The callback gets the results, which are empty for a refusal.
    void request(const QDBusMessage &call, const QVariantMap &options,
                 void (PortalHotKey::*answered)(const QVariantMap &results));
    void sessionMade(const QVariantMap &results);
    void keysBound(const QVariantMap &results);
    void closeSession();
    void report(Outcome outcome);

    QDBusConnection bus_;
    std::optional<X11Keyboard> keyboard_;
    Probe probe_ = Probe::pending;
    bool isPortalLost_ = false;
    std::optional<KeyCombination> wanted_;
    Receiver receiver_;
    std::function<void()> pressed_;
    QPointer<PortalRequest> request_;
    /// The object path of the session, which is empty when there is none.
    QString session_;
    /// Makes the names of sessions unique.
    int sessions_ = 0;
};

} // namespace quillon
