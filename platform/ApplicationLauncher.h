#pragma once

#include <string>
#include <vector>

namespace quillon {

/// An application that is installed. Texts it lacks are empty.
struct Application
{
    /// Ends with ".desktop".
    std::string id;
    /// In the user's language, and as it stands untranslated.
    std::string name;
    std::string untranslatedName = {};
    /// What kind of program it is, in the user's language.
    std::string genericName = {};
    /// The name of its program, without a folder.
    std::string executable = {};
    /// False for what the desktop's menus leave out.
    bool isShown = true;
    bool isTerminalEmulator = false;
    bool isFileManager = false;
};

/// Finds and starts the applications of the desktop. No call waits for what it starts; what is
/// started outlives this program.
class ApplicationLauncher
{
public:
    ApplicationLauncher() = default;
    virtual ~ApplicationLauncher() = default;
    ApplicationLauncher(const ApplicationLauncher &) = delete;
    ApplicationLauncher &operator=(const ApplicationLauncher &) = delete;

    /// By id, in byte order.
    virtual std::vector<Application> applications() const = 0;
    /// Opens the item at the absolute path with the application. One that takes no files is
    /// started in the folder, or in the folder of the file. False when it cannot be started.
    virtual bool launch(const std::string &id, const std::string &path) = 0;
    /// Starts a command line, its words quoted as for a shell, in the folder. False when it cannot
    /// be started.
    virtual bool run(const std::string &commandLine, const std::string &folder) = 0;
};

} // namespace quillon
