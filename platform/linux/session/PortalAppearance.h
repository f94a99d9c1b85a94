#pragma once

#include "platform/Appearance.h"

#include <QDBusMessage>
#include <QObject>

#include <utility>

namespace quillon {

/// Reads the colour scheme of the desktop from org.freedesktop.portal.Settings without blocking. A
/// desktop without the portal never answers.
class PortalAppearance : public QObject, public Appearance
{
    Q_OBJECT

public:
    PortalAppearance();

    bool prefersDark() const override { return prefersDark_; }
    void onChange(std::function<void()> changed) override { changed_ = std::move(changed); }

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    void setColorScheme(const QVariant &value);

    bool prefersDark_ = false;
    std::function<void()> changed_;
};

} // namespace quillon
