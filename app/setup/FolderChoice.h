#pragma once

#include "app/setup/FolderCounter.h"

#include <QWidget>

#include <optional>

class QCheckBox;
class QLabel;

namespace quillon {

/// One folder that can be searched: a box to tick, and how many folders it holds.
class FolderChoice : public QWidget
{
    Q_OBJECT

public:
    /// The name is what the user reads; it may be the path.
    FolderChoice(std::string path, const QString &name, QWidget *parent);

    const std::string &path() const { return path_; }
    bool isChosen() const;
    /// Says nothing of it to others.
    void setChosen(bool isChosen);

    void startCounting(const FolderCounter::Services &services);
    void stopCounting();
    /// Shows what has been counted by now.
    void updateCount();

Q_SIGNALS:
    /// The user ticked the box or took the tick away.
    void chosen(bool isChosen);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitName();

    const std::string path_;
    const QString name_;
    QCheckBox *box_;
    QLabel *count_;
    std::optional<FolderCounter> counter_;
};

} // namespace quillon
