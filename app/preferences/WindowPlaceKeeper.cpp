#include "app/preferences/WindowPlaceKeeper.h"

#include "platform/WindowPlaces.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <utility>

namespace quillon {

namespace {

/// This much of the window's upper edge must be visible, so that the user can take hold of it.
constexpr QSize GRIP{96, 24};

/// Returns the screen on which the window can be moved by its upper edge, or null when there is
/// none.
const QScreen *screenFor(const WindowPlace &place)
{
    const QRect edge(place.left, place.top, place.width, GRIP.height());
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect seen = edge & screen->availableGeometry();
        if (seen.width() >= GRIP.width() && seen.height() >= GRIP.height())
            return screen;
    }
    return nullptr;
}

} // namespace

WindowPlaceKeeper::WindowPlaceKeeper(QWidget &window, std::string name, WindowPlaces &places)
    : window_(window), name_(std::move(name)), places_(places)
{
    window_.installEventFilter(this);
}

WindowPlaceKeeper::~WindowPlaceKeeper()
{
    if (window_.isVisible())
        remember();
}

bool WindowPlaceKeeper::eventFilter(QObject *watched, QEvent *event)
{
    // The window manager hides windows of its own accord as well.
    if (watched == &window_ && event->type() == QEvent::Hide && !event->spontaneous())
        remember();
    return QObject::eventFilter(watched, event);
}

void WindowPlaceKeeper::restore()
{
    if (std::exchange(isRestored_, true))
        return;
    const auto place = places_.place(name_);
    const QScreen *screen = place ? screenFor(*place) : nullptr;
    if (screen == nullptr)
        return;
    window_.resize(
        QSize(place->width, place->height).boundedTo(screen->availableGeometry().size()));
    window_.move(place->left, place->top);
}

void WindowPlaceKeeper::remember()
{
    // Only the size says what a maximised window returns to.
    const QSize size = window_.isMaximized() ? window_.normalGeometry().size() : window_.size();
    const WindowPlace place{
        .left = window_.x(), .top = window_.y(), .width = size.width(), .height = size.height()};
    if (places_.place(name_) != place)
        places_.remember(name_, place);
}

} // namespace quillon
