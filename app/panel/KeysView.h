#pragma once

#include "app/panel/PanelFooter.h"
#include "app/widgets/SetupView.h"

#include <vector>

class QGridLayout;

namespace quillon {

/// The page of all keys of the panel.
class KeysView : public SetupView
{
    Q_OBJECT

public:
    KeysView();

    /// Shows the keys of these actions among the others. The names of the keys that bring the panel
    /// up are empty where there are none.
    void showKeys(const std::vector<PanelFooter::Hint> &actions, const QStringList &panelKeys);
    bool mayClose() override;

Q_SIGNALS:
    /// The user closes the page.
    void closed();

private:
    void addRow(const QString &keys, const QString &meaning);
    void addGap();

    QWidget *table_ = nullptr;
    QGridLayout *rows_ = nullptr;
};

} // namespace quillon
