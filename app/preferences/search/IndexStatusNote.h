#pragma once

#include "app/widgets/FormNote.h"

#include <QBasicTimer>

namespace quillon {

class SearchBase;
class SearchBaseBuilder;

/// Says how the index stands, anew each second while the user sees it: how many folders it holds
/// and watches, the memory that it takes, and when it was built.
class IndexStatusNote : public FormNote
{
    Q_OBJECT

public:
    /// The index and its builder outlive this object.
    IndexStatusNote(SearchBase &searchBase, const SearchBaseBuilder &builder, QWidget *parent);

    void refresh();

protected:
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QString status() const;

    SearchBase &searchBase_;
    const SearchBaseBuilder &builder_;
    QBasicTimer timer_;
};

} // namespace quillon
