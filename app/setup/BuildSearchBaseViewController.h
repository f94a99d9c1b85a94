#pragma once

#include "app/widgets/SetupView.h"
#include "core/SearchBaseBuilder.h"

#include <QBasicTimer>

class QStackedWidget;
class QPushButton;

namespace quillon {

class DefaultsStore;
class ElidedLabel;
class ProgressIndicator;
class SearchBase;
class TaskQueue;

/// Carries out what the rebuild window asks of the application around it.
class BuildSearchBaseDelegate
{
public:
    BuildSearchBaseDelegate() = default;
    virtual ~BuildSearchBaseDelegate() = default;
    BuildSearchBaseDelegate(const BuildSearchBaseDelegate &) = delete;
    BuildSearchBaseDelegate &operator=(const BuildSearchBaseDelegate &) = delete;

    virtual void searchBaseRebuildFinished() = 0;
    /// The user has cancelled the build.
    virtual void searchBaseRebuildStopped() = 0;
    /// The user types although the panel is not shown.
    virtual void typedDuringBuild(const QString &text) = 0;
    virtual void terminate() = 0;
};

/// Shows the progress of the builds of the search base. Main thread only.
class BuildSearchBaseViewController : public SetupView, private SearchBaseBuildObserver
{
    Q_OBJECT

public:
    struct Services
    {
        const SearchBase &searchBase;
        SearchBaseBuilder &builder;
        DefaultsStore &defaults;
        TaskQueue &main;
    };

    /// All services outlive this object.
    BuildSearchBaseViewController(const Services &services, BuildSearchBaseDelegate &delegate);
    ~BuildSearchBaseViewController() override;

    /// Asks whether only the build is to end or all settings are to be erased as well. Half a
    /// second after they are erased, the program ends.
    void stopSearchButtonClicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildBegan() override;
    void buildProgressed(const std::string &line) override;
    void buildEnded() override;

    QWidget *buildProgressPage();
    QWidget *buildQuestionPage();
    void showQuestion(bool isAsked);
    bool isAsking() const;
    void continueBuilding();
    void stopBuilding();
    void eraseSettings();
    void updateCount();

    Services services_;
    BuildSearchBaseDelegate &delegate_;
    QStackedWidget *pages_;
    ProgressIndicator *progressIndicator_ = nullptr;
    ElidedLabel *statusLabel_ = nullptr;
    QLabel *countLabel_ = nullptr;
    QPushButton *hideButton_ = nullptr;
    QLabel *failureLabel_ = nullptr;
    QPushButton *continueButton_ = nullptr;
    QPushButton *eraseButton_ = nullptr;
    QBasicTimer countTimer_;
};

} // namespace quillon
