#pragma once

#include <string>

class QWindow;

/// Speaks the protocols of Wayland compositors that the toolkit does not speak. Nothing is offered
/// on X11, nor in a build without the libraries for it. Main thread only.
namespace quillon::wayland {

/// Returns whether the compositor of this session shows panels, which are surfaces above all
/// windows. It needs no application object.
bool hasPanels();
/// Makes a window, which has not been shown yet, a panel each time that it is shown. A panel is in
/// no list of windows, is centred on the screen that the compositor chooses, which is the one in
/// use, and gets the keyboard at once. Returns false when the window remains an ordinary one.
bool makePanel(QWindow &window);
/// Sets how far the upper edge of a panel is below the upper edge of the screen, or of what the
/// desktop's own bars leave of it. The distance is in device-independent pixels.
void setPanelTop(QWindow &panel, int top);

/// Asks the compositor for a token by which another program's window may take the keyboard from the
/// window of this program that has it. Returns an empty text when there is none.
std::string requestActivationToken();

} // namespace quillon::wayland
