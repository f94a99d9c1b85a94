#include "platform/linux/session/OwnProcess.h"

#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

#include <malloc.h>

namespace quillon {

std::chrono::duration<double> OwnProcess::age()
{
    // In proc(5), the start time is the 20th word after the program's name in parentheses.
    constexpr int WORDS_BEFORE = 19;
    std::ifstream file("/proc/self/stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name = line.rfind(')');
    std::istringstream words(name == std::string::npos ? "" : line.substr(name + 1));
    std::string skipped;
    for (int i = 0; i < WORDS_BEFORE; ++i)
        words >> skipped;
    double ticks = 0;
    timespec now{};
    if (!(words >> ticks) || clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return {};
    const auto sinceBoot = std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
    const std::chrono::duration<double> start(ticks / static_cast<double>(sysconf(_SC_CLK_TCK)));
    return sinceBoot - start;
}

std::uint64_t OwnProcess::residentBytes()
{
    std::ifstream file("/proc/self/statm");
    std::uint64_t all = 0;
    std::uint64_t resident = 0;
    file >> all >> resident;
    return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void OwnProcess::keepHeapSmall()
{
    ::mallopt(M_ARENA_MAX, 1);
    constexpr int LARGE = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, LARGE);
    // Small blocks that are freed would wait in lists until somebody asks for a large one, who then
    // joins them all. After millions of them that stopped the main thread for 145 ms.
    ::mallopt(M_MXFAST, 0);
}

} // namespace quillon
