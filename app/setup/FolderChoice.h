#pragma once

#include "app/setup/FolderCounter.h"

#include <QWidget>

#include <optional>

class QCheckBox;
class QLabel;

namespace quillon {

/// One folder that can be searched, with a box to tick and the number of folders in it.
class FolderChoice : public QWidget
{
    Q_OBJECT

public:
    /// The user reads the name, which may be the path.
    FolderChoice(std::string path, const QString &name, QWidget *parent);

    const std::string &path() const { return path_; }
    bool isChosen() const;
    /// Ticks the box or removes the tick without a signal.
    void setChosen(bool isChosen);

    void startCounting(const FolderCounter::Services &services);
    void stopCounting();
    /// Shows what has been counted by now.
    void updateCount();

Q_SIGNALS:
    /// The user ticked the box or removed the tick.
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
