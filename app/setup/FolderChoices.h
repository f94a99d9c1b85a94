#pragma once

#include "app/setup/FolderChoice.h"

#include <QScrollArea>

#include <optional>
#include <string>
#include <vector>

class QVBoxLayout;

namespace quillon {

/// The folders on offer, one below the other. The list is as high as they need, up to a few rows,
/// and scrolls from there on.
class FolderChoices : public QScrollArea
{
    Q_OBJECT

public:
    explicit FolderChoices(QWidget *parent);

    /// Adds the folder at the end, unless it is already on offer. The user reads the name, which
    /// may be the path.
    FolderChoice &offer(const std::string &path, const QString &name);
    /// Ticks these folders and no others. Folders that are not on offer yet are added.
    void setChosen(const std::vector<std::string> &paths);
    /// Returns the ticked folders, in the order in which they are shown.
    std::vector<std::string> chosen() const;
    /// Scrolls to the folder, if it is on offer, as soon as it has its place.
    void reveal(const std::string &path);
    /// Makes the first folder follow this control in the order of the Tab key. It is called before
    /// there is a folder.
    void setTabStopBefore(QWidget *control) { tabStopBefore_ = control; }

    /// Counts the folders that are on offer, and those that are offered later.
    void startCounting(const FolderCounter::Services &services);
    void stopCounting();
    void updateCounts();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user ticked the folder's box or removed the tick.
    void choiceMade(FolderChoice *choice, bool isChosen);

protected:
    /// Adapts the height of the rows to their texts.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QVBoxLayout *column_;
    std::vector<FolderChoice *> choices_;
    QWidget *tabStopBefore_ = nullptr;
    /// Present while folders are counted.
    std::optional<FolderCounter::Services> counting_;
};

} // namespace quillon
