#pragma once

class QFileDialog;

namespace quillon {

/// Gives the toolkit's dialog for files the user's places, and a size at which nothing is cut in
/// the dialog's font. The desktop's own dialogs do not change.
void arrangeFileDialog(QFileDialog &dialog);

} // namespace quillon
