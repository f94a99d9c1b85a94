#pragma once

#include "app/setup/FolderChoice.h"

#include <QScrollArea>

#include <optional>
#include <string>
#include <vector>

class QVBoxLayout;

namespace quillon {

/// The folders on offer, one below the other: as high as they need, up to a few rows, and scrolled
/// from there on.
class FolderChoices : public QScrollArea
{
    Q_OBJECT

public:
    explicit FolderChoices(QWidget *parent);

    /// Adds the folder as the last one, unless it is on offer already. The name is what the user
    /// reads; it may be the path.
    FolderChoice &offer(const std::string &path, const QString &name);
    /// Ticks these folders and no others. Those that are not on offer yet are added.
    void setChosen(const std::vector<std::string> &paths);
    /// The folders that are ticked, in the order in which they are shown.
    std::vector<std::string> chosen() const;
    /// Scrolls to the folder, if it is on offer, as soon as it has its place.
    void reveal(const std::string &path);
    /// The first folder follows this control in the order of the Tab key. Set before there is one.
    void setTabStopBefore(QWidget *control) { tabStopBefore_ = control; }

    /// Folders that are offered later are counted as well.
    void startCounting(const FolderCounter::Services &services);
    void stopCounting();
    void updateCounts();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user ticked the folder's box or took the tick away.
    void choiceMade(FolderChoice *choice, bool isChosen);

protected:
    /// The rows get their height with their texts.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QVBoxLayout *column_;
    std::vector<FolderChoice *> choices_;
    QWidget *tabStopBefore_ = nullptr;
    /// It is set while folders are counted.
    std::optional<FolderCounter::Services> counting_;
};

} // namespace quillon
