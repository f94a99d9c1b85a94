#pragma once

#include <QObject>

class QLineEdit;
class QListView;

namespace quillon {

class PanelMessage;

/// Directs a screen reader to what matters while the keyboard stays in the field: to the selected
/// row when that changes, to the message in place of the rows, and back to the field when its text
/// is edited.
class PanelSpeech : public QObject
{
public:
    /// The widgets outlive this object.
    PanelSpeech(QLineEdit &field, QListView &rows, PanelMessage &message);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit &field_;
    PanelMessage &message_;
};

} // namespace quillon
