#pragma once

#include "app/panel/SearchResultsModel.h"

#include <QWidget>

#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;

namespace quillon {

class IconSource;
class MenuButton;
class PanelFooter;
class PanelMessage;
class PanelSpeech;
class SearchIndicator;
class SearchResultsTable;

/// The widgets of the panel and nothing of its behaviour: the field between its indicator and
/// the buttons above, the rows or a message below, the footer at the bottom. Its height is that of
/// the rows, up to eight, when fitToRows() was called last.
class SearchPanelView : public QWidget
{
    Q_OBJECT

public:
    explicit SearchPanelView(IconSource &icons, QWidget *parent = nullptr);
    ~SearchPanelView() override;

    /// The rows, in the order shown.
    SearchResultsModel &searchResults() { return searchResults_; }
    QLineEdit &searchTextField() { return *field_; }
    SearchResultsTable &tableView() { return *table_; }
    SearchIndicator &activityIndicator() { return *indicator_; }
    QPushButton &updateButton() { return *updateButton_; }
    MenuButton &menuButton() { return *menuButton_; }
    PanelFooter &footer() { return *footer_; }
    PanelMessage &message() { return *message_; }

    /// A quiet line above the rows; empty for none.
    void setHeading(const QString &heading);
    QString heading() const;
    /// Shows the message in place of the rows, or the rows again.
    void setShowsMessage(bool showsMessage);
    /// Takes the height that the rows or the message want.
    void fitToRows();
    /// The height with as many rows as are ever seen at once.
    int greatestHeight() const;
    /// Gives the first of the buttons shown the keyboard.
    void focusButtons();

protected:
    void paintEvent(QPaintEvent *event) override;
    /// Wherever the pointer is, the wheel turns the rows.
    void wheelEvent(QWheelEvent *event) override;

private:
    QWidget *buildHeader();
    QWidget *buildBody(IconSource &icons);
    int bodyHeight(int rows) const;
    void buildTable(IconSource &icons);

    SearchResultsModel searchResults_;
    QWidget *header_ = nullptr;
    SearchIndicator *indicator_ = nullptr;
    QLineEdit *field_ = nullptr;
    QPushButton *updateButton_ = nullptr;
    MenuButton *menuButton_ = nullptr;
    QWidget *body_ = nullptr;
    QLabel *heading_ = nullptr;
    SearchResultsTable *table_ = nullptr;
    PanelMessage *message_ = nullptr;
    PanelFooter *footer_ = nullptr;
    std::unique_ptr<PanelSpeech> speech_;
};

} // namespace quillon
