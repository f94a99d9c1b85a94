#include "ctl/Output.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace quillon {

void complain(std::string_view line)
{
    const std::string text = "quillonctl: " + std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

Output::Output()
{
    std::setvbuf(stdout, nullptr, _IOFBF, std::size_t{1} << 16);
}

void Output::write(std::string_view bytes)
{
    if (error_ == 0 && std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size())
        error_ = errno;
}

bool Output::finish()
{
    if (error_ == 0 && std::fflush(stdout) != 0)
        error_ = errno;
    if (error_ == 0 || error_ == EPIPE)
        return true;
    complain("standard output: " + std::generic_category().message(error_));
    return false;
}

} // namespace quillon
