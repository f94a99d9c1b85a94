#pragma once

#include <string>
#include <vector>

namespace quillon {

/// An installed application. A text that it lacks is empty.
struct Application
{
    /// The desktop id ends with ".desktop".
    std::string id;
    /// The name in the user's language, and the name in English.
    std::string name;
    std::string untranslatedName = {};
    /// What kind of program it is, in the user's language.
    std::string genericName = {};
    /// The file name of its program, without a folder.
    std::string executable = {};
    /// A name in the icon theme, or the absolute path of a picture.
    std::string icon = {};
    /// False when the desktop's menus leave the application out.
    bool isShown = true;
    bool isTerminalEmulator = false;
    bool isFileManager = false;
};

/// Finds and starts the applications of the desktop. No call waits for the program that it starts,
/// and that program outlives this one.
class ApplicationLauncher
{
public:
    ApplicationLauncher() = default;
    virtual ~ApplicationLauncher() = default;
    ApplicationLauncher(const ApplicationLauncher &) = delete;
    ApplicationLauncher &operator=(const ApplicationLauncher &) = delete;

    /// Returns the applications sorted by id, in byte order.
    virtual std::vector<Application> applications() const = 0;
    /// Opens the item at the absolute path with the application. An application that takes no files
    /// is started in the folder, or in the file's folder. Returns false when it cannot be started.
    virtual bool launch(const std::string &id, const std::string &path) = 0;
    /// Starts a command line, whose words are quoted as for a shell, in the folder. Returns false
    /// when it cannot be started.
    virtual bool run(const std::string &commandLine, const std::string &folder) = 0;
};

} // namespace quillon
