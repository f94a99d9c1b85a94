#include "platform/linux/terminal/Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <termios.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// Bytes that a terminal sends for one key come together. A lone escape that nothing follows for so
/// long is the key of that name.
constexpr auto SEQUENCE_TIME = 50ms;

constexpr std::array ENDING{SIGTERM, SIGINT, SIGHUP, SIGQUIT};

// The cursor is hidden while a frame is drawn. Lines are not wrapped, since a terminal may count
// the columns of a character otherwise than we do. Pasted text comes enclosed in sequences.
constexpr std::string_view BEGIN = "\x1b[?7l\x1b[?2004h";
constexpr std::string_view END = "\x1b[?2004l\x1b[?7h";
constexpr std::string_view WHOLE_SCREEN = "\x1b[?1049h\x1b[H";
constexpr std::string_view FORMER_SCREEN = "\x1b[?1049l";
constexpr std::string_view HIDE_CURSOR = "\x1b[?25l";
constexpr std::string_view SHOW_CURSOR = "\x1b[?25h";
constexpr std::string_view ERASE_LINE = "\x1b[K";
constexpr std::string_view ERASE_BELOW = "\r\x1b[J";
constexpr std::string_view LINE_UP = "\x1b[A";

std::string moved(int count, char direction)
{
    return count > 0 ? "\x1b[" + std::to_string(count) + direction : "";
}

sigset_t awaitedSignals()
{
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGWINCH);
    for (const int each : ENDING)
        sigaddset(&awaited, each);
    return awaited;
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

} // namespace

struct Terminal::Modes
{
    termios settings{};
};

void Terminal::holdSignals()
{
    const sigset_t awaited = awaitedSignals();
    pthread_sigmask(SIG_BLOCK, &awaited, nullptr);
}

std::unique_ptr<Terminal> Terminal::open(Place place, std::error_code &error)
{
    Descriptor device(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
    auto modes = std::make_unique<Modes>();
    if (!device || tcgetattr(device.get(), &modes->settings) != 0) {
        error = lastError();
        return nullptr;
    }
    const sigset_t awaited = awaitedSignals();
    Descriptor signals(signalfd(-1, &awaited, SFD_CLOEXEC));
    if (!signals) {
        error = lastError();
        return nullptr;
    }
    // No line is put together, nothing is echoed, and no key sends a signal. What is written still
    // goes through the terminal as before.
    termios raw = modes->settings;
    raw.c_iflag &= ~static_cast<tcflag_t>(ICRNL | INLCR | IGNCR | ISTRIP | IXON);
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
    raw.c_cc[VMIN] = 1;
    raw.c_cc[VTIME] = 0;
    if (tcsetattr(device.get(), TCSADRAIN, &raw) != 0) {
        error = lastError();
        return nullptr;
    }
    return std::unique_ptr<Terminal>(
        new Terminal(std::move(device), std::move(signals), std::move(modes), place));
}

Terminal::Terminal(Descriptor device, Descriptor signals, std::unique_ptr<Modes> former,
                   Place place)
    : device_(std::move(device)),
      signals_(std::move(signals)),
      former_(std::move(former)),
      place_(place)
{
    write(place_ == Place::screen ? WHOLE_SCREEN : "\r\n");
    write(BEGIN);
}

Terminal::~Terminal()
{
    // The cursor is in the first line of the frame.
    write(ERASE_BELOW);
    write(END);
    write(place_ == Place::screen ? FORMER_SCREEN : LINE_UP);
    // Keys that were typed ahead are for whoever reads next.
    tcsetattr(device_.get(), TCSADRAIN, &former_->settings);
    const sigset_t awaited = awaitedSignals();
    pthread_sigmask(SIG_UNBLOCK, &awaited, nullptr);
}

Terminal::Size Terminal::size() const
{
    winsize told{};
    if (ioctl(device_.get(), TIOCGWINSZ, &told) != 0 || told.ws_row == 0 || told.ws_col == 0)
        return {};
    return {.rows = told.ws_row, .columns = told.ws_col};
}

void Terminal::show(const TerminalFrame &frame)
{
    std::string bytes(HIDE_CURSOR);
    bytes += '\r';
    for (std::size_t i = 0; i < frame.lines.size(); ++i) {
        bytes += i == 0 ? "" : "\r\n";
        bytes += frame.lines[i];
        bytes += ERASE_LINE;
    }
    // This also erases what a larger frame has left below.
    bytes += "\x1b[J\r";
    bytes += moved(static_cast<int>(frame.lines.size()) - 1, 'A');
    bytes += moved(frame.cursorColumn, 'C');
    bytes += SHOW_CURSOR;
    write(bytes);
}

Terminal::Event Terminal::next(std::optional<std::chrono::milliseconds> time)
{
    using Kind = Event::Kind;
    if (auto key = keys_.next(false))
        return {Kind::key, std::move(*key)};
    const bool isBegun = !keys_.isEmpty();
    int patience = -1;
    if (isBegun)
        patience = static_cast<int>(SEQUENCE_TIME.count());
    else if (time)
        patience = static_cast<int>(time->count());

    std::array<pollfd, 2> waiting{{{device_.get(), POLLIN, 0}, {signals_.get(), POLLIN, 0}}};
    const int ready = poll(waiting.data(), waiting.size(), patience);
    if (ready < 0)
        return {};
    if (ready == 0) {
        auto key = isBegun ? keys_.next(true) : std::nullopt;
        return key ? Event{Kind::key, std::move(*key)} : Event{};
    }
    if (waiting[1].revents != 0) {
        if (const auto event = readSignal())
            return *event;
    }
    if (waiting[0].revents != 0 && !readBytes())
        return {Kind::ended, {}};
    auto key = keys_.next(false);
    return key ? Event{Kind::key, std::move(*key)} : Event{};
}

bool Terminal::readBytes()
{
    std::array<char, 4096> bytes{};
    const ssize_t count = ::read(device_.get(), bytes.data(), bytes.size());
    if (count > 0)
        keys_.add({bytes.data(), static_cast<std::size_t>(count)});
    return count > 0 || (count < 0 && (errno == EINTR || errno == EAGAIN));
}

std::optional<Terminal::Event> Terminal::readSignal()
{
    signalfd_siginfo told{};
    if (::read(signals_.get(), &told, sizeof told) != sizeof told)
        return std::nullopt;
    const auto number = static_cast<int>(told.ssi_signo);
    if (number == SIGWINCH)
        return Event{Event::Kind::resized, {}};
    endingSignal_ = number;
    return Event{Event::Kind::ended, {}};
}

void Terminal::write(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(device_.get(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return;
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Terminal::endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    _exit(128 + signal);
}

} // namespace quillon
