#pragma once

#include "platform/linux/disk/Descriptor.h"
#include "platform/linux/terminal/KeyReader.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillon {

/// What a terminal shows: some lines, and a cursor in the first one.
struct TerminalFrame
{
    /// Each line is shorter than the terminal is wide. It may hold sequences for colours and ends
    /// with none in force.
    std::vector<std::string> lines;
    /// The column of the cursor, counted from 0.
    int cursorColumn = 0;
};

/// The terminal of this process (/dev/tty), whatever the standard streams are connected with. While
/// there is an object, keys come one by one and the terminal shows frames. The end of the object
/// leaves the terminal as it was. At most one object exists at a time, and only one thread uses it.
///
/// Frames are drawn with the sequences of ECMA-48 and nothing else. The libraries that draw on
/// whole screens cannot draw on some lines below the cursor and leave everything above them alone.
class Terminal
{
public:
    struct Size
    {
        int rows = 24;
        int columns = 80;
    };

    enum class Place
    {
        /// The whole screen, which comes back as it was.
        screen,
        /// The lines below the one with the cursor.
        below,
    };

    struct Event
    {
        enum class Kind
        {
            key,
            resized,
            /// The time was over, or the bytes so far are no key.
            nothing,
            /// A signal asks this process to end, or the terminal is gone.
            ended,
        };
        Kind kind = Kind::nothing;
        TerminalKey key;
    };

    /// Makes the signals that end a process wait for next(), in this thread and in all threads that
    /// it starts later. It is called before the first of them is started, so that no signal ends
    /// the process before the terminal is as it was.
    static void holdSignals();
    /// Returns null, with the error set, when there is no terminal. Signals are held.
    static std::unique_ptr<Terminal> open(Place place, std::error_code &error);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    Size size() const;
    /// Draws the frame over the one before.
    void show(const TerminalFrame &frame);
    /// Waits for the next event, for ever when no time is given.
    Event next(std::optional<std::chrono::milliseconds> time);
    /// Returns the signal that ended next(), or nothing.
    std::optional<int> endingSignal() const { return endingSignal_; }

    /// Ends this process, whose signals are no longer held, as the signal would have ended it.
    [[noreturn]] static void endBySignal(int signal);

private:
    struct Modes;

    Terminal(Descriptor device, Descriptor signals, std::unique_ptr<Modes> former, Place place);

    bool readBytes();
    /// Returns nothing when no signal has come after all.
    std::optional<Event> readSignal();
    void write(std::string_view bytes) const;

    const Descriptor device_;
    const Descriptor signals_;
    const std::unique_ptr<Modes> former_;
    const Place place_;
    KeyReader keys_;
    std::optional<int> endingSignal_;
};

} // namespace quillon
