#pragma once

#include <QLabel>
#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace quillon {

/// The content of the set-up windows and the notices: one column of text and controls with the
/// buttons at its end.
class SetupView : public QWidget
{
    Q_OBJECT

public:
    /// The least width of the column, in device-independent pixels.
    static constexpr int TEXT_WIDTH = 456;
    static constexpr int MARGIN = 32;
    /// The gaps between parts that belong together, and between those that do not.
    static constexpr int NEAR = 4;
    static constexpr int APART = 20;

    explicit SetupView(QWidget *parent = nullptr);

    /// The user wants to close the window. Returns false to keep it open.
    virtual bool mayClose() { return true; }

protected:
    /// Returns a column with the usual distances. Only a column around a whole window has margins.
    static QVBoxLayout *column(QWidget *of, int spacing, int margin = 0);
    static QHBoxLayout *line(int spacing);
    static QLabel *label(const QString &text, QPalette::ColorRole tone, QWidget *parent);
    /// Returns wrapped text of a fixed width, which a large font makes wider, and a fixed height.
    static QLabel *paragraph(const QString &text, QPalette::ColorRole tone, QWidget *parent);
    /// Changes the text of such a paragraph.
    static void setParagraph(QLabel *paragraph, const QString &text);
    /// Returns a line with the program's icon and a title.
    static QWidget *heading(const QString &title, QWidget *parent);
    /// Makes the text bold, and larger by the factor.
    static void emphasise(QLabel *label, double factor = 1.0);
};

} // namespace quillon
