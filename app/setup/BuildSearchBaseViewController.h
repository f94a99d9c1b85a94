#pragma once

#include "app/widgets/SetupView.h"
#include "core/SearchBaseBuilder.h"

#include <QBasicTimer>

class QStackedWidget;

namespace quillon {

class DefaultsStore;
class ElidedLabel;
class PanelButton;
class ProgressIndicator;
class SearchBase;
class TaskQueue;

/// What the rebuild window asks of the application around it.
class BuildSearchBaseDelegate
{
public:
    BuildSearchBaseDelegate() = default;
    virtual ~BuildSearchBaseDelegate() = default;
    BuildSearchBaseDelegate(const BuildSearchBaseDelegate &) = delete;
    BuildSearchBaseDelegate &operator=(const BuildSearchBaseDelegate &) = delete;

    virtual void searchBaseRebuildFinished() = 0;
    virtual void terminate() = 0;
};

/// Has the search base built, and shows how that goes whether or not its window is shown. Main
/// thread only.
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

    /// All of them outlive this.
    BuildSearchBaseViewController(const Services &services, BuildSearchBaseDelegate &delegate);
    ~BuildSearchBaseViewController() override;

    void setPanelPalette(const PanelPalette &palette) override;

    /// Empties the index and builds it anew, as SearchBaseBuilder::start().
    void startBuilding();
    /// Asks whether all settings are to be erased. Once that is answered with yes they are, and the
    /// program ends half a second later.
    void stopSearchButtonClicked();

protected:
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
    void keepSettings();
    void eraseSettings();
    void updateCount();

    Services services_;
    BuildSearchBaseDelegate &delegate_;
    QStackedWidget *pages_;
    ProgressIndicator *progressIndicator_ = nullptr;
    ElidedLabel *statusLabel_ = nullptr;
    QLabel *countLabel_ = nullptr;
    PanelButton *hideButton_ = nullptr;
    QLabel *failureLabel_ = nullptr;
    PanelButton *keepButton_ = nullptr;
    PanelButton *eraseButton_ = nullptr;
    QBasicTimer countTimer_;
};

} // namespace quillon
