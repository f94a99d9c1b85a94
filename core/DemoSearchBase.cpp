#include "core/DemoSearchBase.h"

#include <array>

namespace quillon {

namespace {

constexpr std::array SAMPLE_FOLDERS = {
    "/home/robin",
    "/home/robin/Desktop",
    "/home/robin/Documents",
    "/home/robin/Documents/Allotment",
    "/home/robin/Documents/Allotment/Seed orders",
    "/home/robin/Documents/Flat",
    "/home/robin/Documents/Flat/Insurance",
    "/home/robin/Documents/Flat/Meter readings",
    "/home/robin/Documents/Recipes",
    "/home/robin/Documents/Recipes/Bread",
    "/home/robin/Documents/Taxes 2023",
    "/home/robin/Documents/Taxes 2024",
    "/home/robin/Downloads",
    "/home/robin/Music",
    "/home/robin/Music/Choir",
    "/home/robin/Music/Choir/Scores",
    "/home/robin/Pictures",
    "/home/robin/Pictures/2023-08 Lakes",
    "/home/robin/Pictures/2024-05 Harbour festival",
    "/home/robin/Projects",
    "/home/robin/Projects/birdhouse",
    "/home/robin/Projects/birdhouse/drawings",
    "/home/robin/Projects/weather-station",
    "/home/robin/Projects/weather-station/firmware",
    "/home/robin/Projects/weather-station/firmware/drivers",
    "/home/robin/Projects/weather-station/website",
    "/home/robin/Videos",
};

} // namespace

void DemoSearchBase::build(const Progress &, const std::stop_token &)
{
    for (const char *folder : SAMPLE_FOLDERS)
        add(folder);
}

} // namespace quillon
