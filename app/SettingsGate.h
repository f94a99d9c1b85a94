#pragma once

#include "app/widgets/NoticeWindow.h"
#include "platform/DefaultsChanges.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <string>
#include <vector>

namespace quillon {

class DefaultsStore;
class Workspace;
struct DefaultsFault;
struct WrongChoice;

/// Stands between a start and settings that it cannot use: a window says what is wrong until the
/// file is mended, the user has it set aside, or the user quits. Main thread only.
class SettingsGate
{
    Q_DECLARE_TR_FUNCTIONS(SettingsGate)

public:
    struct Services
    {
        DefaultsStore &defaults;
        DefaultsChanges &changes;
        Workspace &workspace;
        WindowSystem &windowSystem;
    };

    /// Returns true when a start can use the settings. Otherwise standard error says what is wrong.
    static bool isOpen(DefaultsStore &defaults, const std::string &file);

    /// The services outlive this; the file is the absolute path of the settings.
    SettingsGate(const Services &services, std::string file);

    /// Shows the window and returns when the settings can be used, or with false when the user
    /// quits. Events are handled meanwhile.
    bool wait();
    /// Brings the window to the front.
    void present() { window_.present(notice_); }
    void quit() { loop_.quit(); }
    void setPanelPalette(const PanelPalette &palette) { window_.setPanelPalette(palette); }

private:
    /// Shows what is wrong now, or ends the wait when nothing is.
    void look();
    void show(Notice notice);
    Notice unreadable(const DefaultsFault &fault);
    Notice wrong(const std::vector<WrongChoice> &choices);
    Notice::Choice opening();
    void openFile();
    void beginAnew();

    Services services_;
    const std::string file_;
    NoticeWindow window_;
    Notice notice_;
    QEventLoop loop_;
    const DefaultsReceiver receiver_;
    bool isOpen_ = false;
    /// The user reads where the former settings are kept.
    bool isBeginningAnew_ = false;
};

} // namespace quillon
