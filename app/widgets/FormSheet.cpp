#include "app/widgets/FormSheet.h"

#include "app/widgets/FormPane.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace quillon {

FormSheet::FormSheet(const QString &title, const QString &confirmation, QWidget *over)
    : QDialog(over, Qt::Sheet), form_(new FormPane(this))
{
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(form_);

    auto *line = new QHBoxLayout;
    line->setContentsMargins(metrics::FORM_MARGIN, 0, metrics::FORM_MARGIN, metrics::FORM_MARGIN);
    line->setSpacing(metrics::FORM_NEAR);
    line->addStretch();
    cancelButton_ = pushButton(tr("&Cancel"), ButtonRank::secondary, this);
    connect(cancelButton_, &QPushButton::clicked, this, &QDialog::reject);
    line->addWidget(cancelButton_);
    confirmationButton_ = pushButton(confirmation, ButtonRank::primary, this);
    confirmationButton_->setDefault(true);
    connect(confirmationButton_, &QPushButton::clicked, this, &FormSheet::confirmed);
    line->addWidget(confirmationButton_);
    column->addLayout(line);
}

void FormSheet::confirm(const QString &title, const QString &confirmation, const QString &text,
                        QWidget *over, std::function<void()> carryOut)
{
    auto *sheet = new FormSheet(title, confirmation, over);
    sheet->form().addWideNote(text);
    connect(sheet, &FormSheet::confirmed, over, [sheet, carryOut = std::move(carryOut)] {
        sheet->accept();
        carryOut();
    });
    sheet->cancelButton().setDefault(true);
    sheet->cancelButton().setFocus();
    sheet->open();
}

} // namespace quillon
