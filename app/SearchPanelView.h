#pragma once

#include "app/PanelPalette.h"

#include <QWidget>

class QLineEdit;
class QListView;

namespace quillon {

class IconSource;
class LightningSearchTableRowView;
class PanelFooter;
class PanelMessage;
class SearchIndicator;
class SearchResultsModel;

/// The widgets of the panel and nothing of its behaviour: the field with its indicator above, the
/// rows or a message below, the footer at the bottom. Its size does not depend on what it shows.
class SearchPanelView : public QWidget
{
    Q_OBJECT

public:
    SearchPanelView(SearchResultsModel &model, IconSource &icons);

    void setPanelPalette(const PanelPalette &palette);
    const PanelPalette &panelPalette() const { return palette_; }

    QLineEdit &searchTextField() { return *field_; }
    QListView &tableView() { return *table_; }
    SearchIndicator &activityIndicator() { return *indicator_; }
    PanelFooter &footer() { return *footer_; }
    PanelMessage &message() { return *message_; }

    /// Shows the message in place of the rows, or the rows again.
    void setShowsMessage(bool showsMessage);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget *buildHeader();
    QWidget *buildBody(SearchResultsModel &model, IconSource &icons);
    void buildTable(SearchResultsModel &model, IconSource &icons);

    PanelPalette palette_;
    QWidget *header_ = nullptr;
    SearchIndicator *indicator_ = nullptr;
    QLineEdit *field_ = nullptr;
    QListView *table_ = nullptr;
    LightningSearchTableRowView *rows_ = nullptr;
    PanelMessage *message_ = nullptr;
    PanelFooter *footer_ = nullptr;
};

} // namespace quillon
