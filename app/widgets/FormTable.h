#pragma once

#include <QList>
#include <QString>
#include <QTableView>

#include <optional>

class QStandardItemModel;

namespace quillon {

/// A piece of a row's text.
struct FormTextRun
{
    QString text;
    bool isBold = false;
    /// Says less than the rest.
    bool isQuiet = false;
    friend bool operator==(const FormTextRun &, const FormTextRun &) = default;
};

/// One column of styled sentences, without a header, each row as high as its text wants at the
/// width there is. At most one row is selected.
class FormTable : public QTableView
{
    Q_OBJECT

public:
    /// The identifier names the kind of row that the table shows.
    explicit FormTable(const QString &rowIdentifier, QWidget *parent = nullptr);

    /// Replaces all rows. The selection stays on its row number as long as there is one.
    void setRows(const QList<QList<FormTextRun>> &rows);
    /// Puts a box to tick below the text of a row, with words beside it.
    void setTickBox(int row, const QString &words, bool isTicked);
    /// Returns nothing for a row without a box.
    std::optional<bool> isTicked(int row) const;
    int rowCount() const;
    QString rowText(int row) const;
    std::optional<int> selectedRow() const;
    /// Selects the row and brings it into view.
    void showRow(int row);
    const QString &rowIdentifier() const { return rowIdentifier_; }
    /// It is shown in the middle while there are no rows.
    void setPlaceholder(const QString &sentence) { placeholder_ = sentence; }

Q_SIGNALS:
    void selectedRowChanged();
    /// Delete was pressed on the selected row.
    void removalRequested();
    /// The user has clicked the box of a row, or pressed Space on the row.
    void tickBoxToggled(int row, bool isTicked);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    class RowView;

    const QString rowIdentifier_;
    QString placeholder_;
    QStandardItemModel *model_;
};

} // namespace quillon
