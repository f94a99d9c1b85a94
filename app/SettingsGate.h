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

/// Stops a start whose settings cannot be used. A window says what is wrong until the file is
/// mended, the user has it set aside, or the user quits. Main thread only.
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

    /// Returns true when a start can use the settings. Otherwise prints to standard error what is
    /// wrong.
    static bool isOpen(DefaultsStore &defaults, const std::string &file);

    /// The services outlive this object. The file is the absolute path of the settings.
    SettingsGate(const Services &services, std::string file);

    /// Shows the window and waits, while events are handled. Returns true when the settings can be
    /// used, and false when the user quits.
    bool wait();
    /// Brings the window to the front.
    void present() { window_.present(notice_); }
    void quit() { loop_.quit(); }

private:
    /// Shows what is wrong now, or ends the wait when nothing is wrong.
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
    /// True while the user reads where the former settings are kept.
    bool isBeginningAnew_ = false;
};

} // namespace quillon
