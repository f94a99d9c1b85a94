#pragma once

#include "actions/ActionShortcutFlags.h"

#include <QWidget>

#include <optional>
#include <vector>

namespace quillon {

/// The bottom line of the panel. On the left are the keys that work on the selected row, on the
/// right the state of the index, or a fault that needs the user.
class PanelFooter : public QWidget
{
    Q_OBJECT

public:
    struct Hint
    {
        /// The keys that are held with Return.
        ActionShortcutFlags flags = {};
        /// The names of the keys on the keyboard.
        QString key = {};
        QString meaning = {};
        /// The text in a menu, if it is not the meaning.
        QString menuText = {};
        /// A longer text, which is shown while the pointer rests on the hint.
        QString toolTip = {};
    };

    explicit PanelFooter(QWidget *parent);

    /// Shows as many hints as there is room for, beginning with the first, and always the one for
    /// the held keys. Dots stand for the others.
    void setHints(std::vector<Hint> hints);
    const std::vector<Hint> &hints() const { return hints_; }
    /// Highlights the hint for exactly these keys. No keys highlight none.
    void setHeldKeys(ActionShortcutFlags flags);
    void setStatus(const QString &status);
    QString status() const { return status_; }
    /// Shows a fault in place of the status, or the status again when the notice is empty. The tool
    /// tip says more about the fault.
    void setNotice(const QString &notice, const QString &toolTip = {});
    QString notice() const { return notice_; }

Q_SIGNALS:
    void noticeClicked();
    /// The dots were clicked.
    void moreClicked();

protected:
    bool event(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// A hint that is shown, and its place.
    struct Place
    {
        const Hint &hint;
        QRect key;
        QRect meaning;
    };
    std::vector<Place> places() const;
    std::vector<Place> placesUpTo(int end, bool &areAll) const;
    bool isOnMore(QPoint position) const;
    Place place(const Hint &hint, int left) const;
    bool isHeld(const Hint &hint) const { return held_ && hint.flags == *held_; }
    QRect line() const;
    /// Return the text on the right, and its place.
    const QString &words() const { return notice_.isEmpty() ? status_ : notice_; }
    QRect wordsPlace() const;
    /// Returns where the text begins in a layout that goes from left to right.
    int wordsLeft() const;
    void tellScreenReaders();

    std::vector<Hint> hints_;
    const Hint more_{.flags = {.option = true, .shift = true, .command = true},
                     .key = QStringLiteral("…"),
                     .toolTip = tr("More that can be done with the row")};
    std::optional<ActionShortcutFlags> held_;
    QString status_;
    QString notice_;
    QString noticeToolTip_;
};

} // namespace quillon
