#pragma once

#include "actions/ActionShortcutFlags.h"
#include "app/widgets/PanelPalette.h"

#include <QWidget>

#include <optional>
#include <vector>

namespace quillon {

/// The bottom line of the panel: keys that work on the selected row at the left, the state of the
/// index at the right.
class PanelFooter : public QWidget
{
public:
    struct Hint
    {
        /// Held with Return.
        ActionShortcutFlags flags = {};
        /// The keys as they are called on the keyboard.
        QString key = {};
        QString meaning = {};
        /// More about it, shown while the pointer rests on it.
        QString toolTip = {};
    };

    explicit PanelFooter(QWidget *parent);

    void setPalette(const PanelPalette &palette);
    /// As many as there is room for are shown, from the first on, and the one for the held keys.
    void setHints(std::vector<Hint> hints);
    const std::vector<Hint> &hints() const { return hints_; }
    /// The hint for exactly these keys stands out; none does for no keys.
    void setHeldKeys(ActionShortcutFlags flags);
    void setStatus(const QString &status);
    QString status() const { return status_; }

protected:
    bool event(QEvent *event) override;
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
    Place place(const Hint &hint, int left) const;
    bool isHeld(const Hint &hint) const { return held_ && hint.flags == *held_; }
    QRect line() const;

    PanelPalette palette_ = PanelPalette::light();
    std::vector<Hint> hints_;
    std::optional<ActionShortcutFlags> held_;
    QString status_;
};

} // namespace quillon
