#include "ctl/Output.h"

#include <QDateTime>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace quillon {

void complain(std::string_view line)
{
    const std::string text = "quillonctl: " + std::string(line) + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string localTime(std::chrono::system_clock::time_point time)
{
    return QDateTime::fromSecsSinceEpoch(std::chrono::system_clock::to_time_t(time))
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
        .toStdString();
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
