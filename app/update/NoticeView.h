#pragma once

#include "app/update/NoticeWindow.h"
#include "app/widgets/SetupView.h"

class QHBoxLayout;

namespace quillon {

/// A notice as the window around it shows it.
class NoticeView : public SetupView
{
    Q_OBJECT

public:
    NoticeView();

    /// In place of the one shown; its last button gets the focus.
    void setNotice(const Notice &notice);
    void setPanelPalette(const PanelPalette &palette) override;

private:
    QHBoxLayout *buildButtons(const Notice &notice);
    void announce();

    PanelPalette palette_ = PanelPalette::light();
    QWidget *contents_ = nullptr;
};

} // namespace quillon
