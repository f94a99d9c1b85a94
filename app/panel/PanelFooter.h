#pragma once

#include "actions/ActionShortcutFlags.h"
#include "app/widgets/PanelPalette.h"

#include <QWidget>

#include <optional>
#include <vector>

namespace quillon {

/// The bottom line of the panel: keys that work on the selected row at the left; at the right the
/// state of the index, or what is wrong and needs the user.
class PanelFooter : public QWidget
{
    Q_OBJECT

public:
    struct Hint
    {
        /// These keys are held with Return.
        ActionShortcutFlags flags = {};
        /// The keys as they are called on the keyboard.
        QString key = {};
        QString meaning = {};
        /// The text in a menu, where it is not the meaning.
        QString menuText = {};
        /// More about it, shown while the pointer rests on it.
        QString toolTip = {};
    };

    explicit PanelFooter(QWidget *parent);

    void setPalette(const PanelPalette &palette);
    /// Shows as many hints as there is room for, from the first on, and always the one for the held
    /// keys. Dots stand for the others.
    void setHints(std::vector<Hint> hints);
    const std::vector<Hint> &hints() const { return hints_; }
    /// The hint for exactly these keys stands out; none does for no keys.
    void setHeldKeys(ActionShortcutFlags flags);
    void setStatus(const QString &status);
    QString status() const { return status_; }
    /// Says what is wrong in the status's place; empty when nothing is wrong any more. The tool tip
    /// says more about it.
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
    /// A hint that is shown, and where.
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
    /// The text at the right, and where it stands.
    const QString &words() const { return notice_.isEmpty() ? status_ : notice_; }
    QRect wordsPlace() const;
    void tellScreenReaders();

    PanelPalette palette_ = PanelPalette::light();
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
