#include "platform/linux/bus/OwnPrograms.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <unistd.h>

namespace quillon {

std::string ownProgramFolder()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

std::string becomeProgram(const std::string &path, const std::vector<std::string> &arguments)
{
    std::vector<std::string> texts = arguments;
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    execv(path.c_str(), pointers.data());
    return std::strerror(errno);
}

} // namespace quillon
