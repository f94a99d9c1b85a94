#include "app/preferences/search/AddIncludeFilePatternViewController.h"

#include "app/widgets/FormNote.h"
#include "app/widgets/FormPane.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/WriteFault.h"
#include "indexing/SearchBaseFinder.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace quillon {

AddIncludeFilePatternViewController::AddIncludeFilePatternViewController(SearchBaseFinder &finder,
                                                                         Added added, QWidget *over)
    : FormSheet(tr("Include Files with Extension"), tr("&Add"), over),
      finder_(finder),
      added_(std::move(added)),
      extensionTextField_(new QLineEdit(&form()))
{
    extensionTextField_->setMinimumWidth(metrics::FORM_CONTROL);
    extensionTextField_->setPlaceholderText(QStringLiteral("code-workspace"));
    form().addRow(tr("&Extension:"), extensionTextField_);
    note_ = form().addNote();
    connect(extensionTextField_, &QLineEdit::textChanged, this,
            &AddIncludeFilePatternViewController::textChanged);
    connect(this, &FormSheet::confirmed, this, &AddIncludeFilePatternViewController::confirm);
    extensionTextField_->setFocus();
    textChanged();
}

void AddIncludeFilePatternViewController::textChanged()
{
    QString text = extensionTextField_->text();
    const qsizetype typed = text.size();
    if (text.startsWith(u"*."))
        text.remove(0, 2);
    while (text.startsWith(u'.'))
        text.remove(0, 1);
    const bool isDotDropped = text.size() != typed;
    if (isDotDropped) {
        const QSignalBlocker once(extensionTextField_);
        extensionTextField_->setText(text);
    }
    note_->setSentence(isDotDropped
                           ? tr("The dot is dropped: it stands before every extension.")
                           : tr("Files whose names end in a dot and this are found like folders. "
                                "Capital letters match only themselves."));
    note_->sayFault(text.isEmpty() ? QString() : fault());
}

QString AddIncludeFilePatternViewController::fault() const
{
    const QString text = extensionTextField_->text();
    const auto listed = finder_.includeFilePatternPreferences.values();
    if (text.isEmpty())
        return tr("Which extension is to be included?");
    if (std::ranges::find(listed, text.toStdString()) != listed.end())
        return tr("“%1” is listed already.").arg(text);
    if (text.contains(u'/'))
        return tr("An extension holds no slash.");
    if (text.contains(u'.'))
        return tr("Only what follows the last dot counts: “%1”.")
            .arg(text.mid(text.lastIndexOf(u'.') + 1));
    return {};
}

void AddIncludeFilePatternViewController::confirm()
{
    note_->sayFault(fault());
    if (note_->hasFault())
        return;
    const std::string extension = extensionTextField_->text().toStdString();
    if (!finder_.includeFilePatternPreferences.add(extension))
        return note_->sayFault(writeFault());
    added_(extension);
    accept();
}

} // namespace quillon
