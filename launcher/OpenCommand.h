#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace quillon {

class ApplicationLauncher;
class Workspace;

/// Opens a file or folder with the application of a given name, or with the default application.
class OpenCommand
{
public:
    /// Writes each complaint to the stream as one line.
    OpenCommand(ApplicationLauncher &launcher, Workspace &workspace, std::FILE *diagnostics);

    /// Takes the arguments of the command line without the program's name: "-a", NAME, PATH or PATH
    /// alone. Returns the exit status: 0 when the item is opened, 1 when it cannot be opened, 2
    /// when the arguments are wrong.
    int run(const std::vector<std::string> &arguments);

private:
    bool openWith(const std::string &name, const std::string &path);
    /// Opens the user's terminal in the folder, or in the folder that holds the file.
    bool openTerminal(const std::string &path);
    int complain(int status, const std::string &line) const;

    ApplicationLauncher &launcher_;
    Workspace &workspace_;
    std::FILE *diagnostics_;
};

} // namespace quillon
