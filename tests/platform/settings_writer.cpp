#include "platform/linux/settings/JsonDefaultsStore.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include <unistd.h>

/// Writes one setting into the file named by the first argument. The status says whether that
/// succeeded. With a second argument, the settings are read first, and then the file is given that
/// text. Two calls that fail mark where the write begins and ends, for a tracer of system calls.
int main(int argc, char **argv)
{
    if (argc < 2)
        return EXIT_FAILURE;
    quillon::JsonDefaultsStore store(argv[1]);
    if (argc > 2) {
        if (store.fault())
            return EXIT_FAILURE;
        std::ofstream(argv[1]) << argv[2];
        // Waits until the file no longer looks as if somebody were writing it.
        std::this_thread::sleep_for(
            std::chrono::milliseconds(2 * quillon::SettingsFile::WRITING_TIME));
    }
    const int begins = ::access("/settings_writer/begins", F_OK);
    const bool isWritten = store.set("new", {true});
    const int ends = ::access("/settings_writer/ends", F_OK);
    return isWritten && begins != 0 && ends != 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
