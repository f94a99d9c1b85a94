#include "app/preferences/AddActionViewController.h"

#include "app/preferences/ListedApplication.h"
#include "app/preferences/PreferenceTexts.h"
#include "app/widgets/FileDialog.h"
#include "app/widgets/FormNote.h"
#include "app/widgets/FormPane.h"
#include "app/widgets/KeyNames.h"
#include "app/widgets/PanelMetrics.h"
#include "app/widgets/QuillonStyle.h"
#include "app/widgets/WriteFault.h"
#include "platform/ApplicationLauncher.h"

#include <QComboBox>
#include <QCompleter>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>

#include <algorithm>

namespace quillon {

namespace {

/// What "Open Application" finds on every desktop, whatever it is called there.
constexpr const char *ANY_TERMINAL = "Terminal";
constexpr int LISTED_AT_ONCE = 10;
constexpr int TARGET = Qt::UserRole;

bool isNamed(const Application &application, const QString &name)
{
    const std::string *const names[] = {&application.name, &application.untranslatedName,
                                        &application.executable, &application.id};
    return std::ranges::any_of(names, [&name](const std::string *each) {
        return QString::fromStdString(*each).compare(name, Qt::CaseInsensitive) == 0;
    });
}

/// Lists the titles of applications that contain what is typed. What is chosen is the text by which
/// "Open Application" finds the application.
class ApplicationList : public QCompleter
{
public:
    ApplicationList(const std::vector<Application> &installed, QObject *parent) : QCompleter(parent)
    {
        auto *rows = new QStandardItemModel(this);
        const QIcon any = QIcon::fromTheme(QStringLiteral("application-x-executable"));
        for (const ListedApplication &each : listedApplications(installed)) {
            auto *row = new QStandardItem(
                QIcon::fromTheme(QString::fromStdString(each.application.icon), any), each.title);
            row->setData(each.target, TARGET);
            rows->appendRow(row);
        }
        setModel(rows);
        setCaseSensitivity(Qt::CaseInsensitive);
        setFilterMode(Qt::MatchContains);
        setMaxVisibleItems(LISTED_AT_ONCE);
    }

    QString pathFromIndex(const QModelIndex &row) const override
    {
        return row.data(TARGET).toString();
    }
};

} // namespace

AddActionViewController::AddActionViewController(const Services &services,
                                                 const std::optional<ActionModel> &changed,
                                                 QWidget *over)
    : FormSheet(changed ? tr("Change Action") : tr("Add Action"), tr("&Done"), over),
      shortcutButton(new QComboBox(&form())),
      actionButton(new QComboBox(&form())),
      parametersTextField(new QLineEdit(&form())),
      chooseButton(pushButton(tr("C&hoose…"), ButtonRank::control, &form())),
      services_(services),
      finder_(services.defaults),
      changed_(changed)
{
    buildForm();
    fillMenus();
    kindChanged();
    if (changed_)
        showChanged();
    shortcutButton->setFocus();
    connect(actionButton, &QComboBox::currentIndexChanged, this,
            &AddActionViewController::kindChanged);
    connect(parametersTextField, &QLineEdit::textChanged, this,
            &AddActionViewController::checkTarget);
    connect(chooseButton, &QPushButton::clicked, this, [this] {
        if (selectedKind() == ActionType::openApplication)
            offerApplications();
        else
            chooseExecutable();
    });
    connect(this, &FormSheet::confirmed, this, &AddActionViewController::doneClicked);
}

void AddActionViewController::buildForm()
{
    form().addRow(tr("&Keys:"), shortcutButton);
    shortcutNote_ = form().addNote();
    form().addRow(tr("&Action:"), actionButton);
    auto *target = new QWidget(&form());
    auto *line = new QHBoxLayout(target);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(metrics::INSET);
    parametersTextField->setMinimumWidth(metrics::fieldWidth(fontMetrics()));
    line->addWidget(parametersTextField, 1);
    line->addWidget(chooseButton);
    target->setFocusProxy(parametersTextField);
    form().addRow(tr("&With:"), target);
    targetNote_ = form().addNote();
}

void AddActionViewController::fillMenus()
{
    std::vector<std::string> titles = finder_.availableShortcutTitles();
    if (changed_)
        titles.insert(titles.begin(), changed_->flags.title());
    for (const std::string &title : titles)
        shortcutButton->addItem(keyNames(flagsFromShortcutTitle(title), u'+'),
                                QString::fromStdString(title));
    if (shortcutButton->count() == 0) {
        shortcutButton->setEnabled(false);
        shortcutNote_->setSentence(
            tr("Every combination has an action. Remove one to make room for another."));
    }
    for (const ActionType &kind : ActionType::all)
        actionButton->addItem(drawnTitle(kind.key()), QString::fromStdString(kind.key()));
}

void AddActionViewController::showChanged()
{
    const int kind = actionButton->findData(QString::fromStdString(changed_->actionType.key()));
    actionButton->setCurrentIndex(std::max(kind, 0));
    kindChanged();
    if (changed_->actionType.requiresTarget())
        parametersTextField->setText(QString::fromStdString(changed_->actionTarget.key()));
}

std::optional<ActionType> AddActionViewController::selectedKind() const
{
    const std::string key = actionButton->currentData().toString().toStdString();
    const auto *kind = std::ranges::find(ActionType::all, key, &ActionType::key);
    return kind == ActionType::all.end() ? std::nullopt : std::optional(*kind);
}

void AddActionViewController::kindChanged()
{
    const auto kind = selectedKind();
    if (!kind)
        return;
    const bool requiresTarget = kind->requiresTarget();
    parametersTextField->setReadOnly(!requiresTarget);
    parametersTextField->setEnabled(requiresTarget);
    parametersTextField->setText(requiresTarget ? QString()
                                                : drawnTitle(ActionTarget::selectedRow.key()));
    if (*kind == ActionType::openApplication)
        parametersTextField->setPlaceholderText(QStringLiteral("Sublime Text"));
    else if (*kind == ActionType::executeShellCommand)
        parametersTextField->setPlaceholderText(QStringLiteral("/Users/me/scripts/my-script.sh"));
    chooseButton->setEnabled(requiresTarget);
    if (*kind == ActionType::openApplication && applicationList_ == nullptr) {
        applications_ = services_.applications.applications();
        applicationList_ = new ApplicationList(applications_, this);
    }
    parametersTextField->setCompleter(*kind == ActionType::openApplication ? applicationList_
                                                                           : nullptr);
    checkTarget();
}

void AddActionViewController::doneClicked()
{
    const auto kind = selectedKind();
    // What the field says in place of a target may be in any language.
    const auto target = kind && !kind->requiresTarget()
                            ? ActionTarget::selectedRow
                            : ActionTarget::fromText(targetText().toStdString());
    if (!target)
        return targetNote_->sayFault(kind == ActionType::executeShellCommand
                                         ? tr("Which program is to be run?")
                                         : tr("Which application is to open the row?"));
    if (!kind || shortcutButton->currentIndex() < 0)
        return;
    const std::string title = shortcutButton->currentData().toString().toStdString();
    const ActionModel action{
        .flags = flagsFromShortcutTitle(title), .actionType = *kind, .actionTarget = *target};
    const bool isStored =
        changed_ ? finder_.replaceAction(*changed_, action) : finder_.addAction(action);
    if (!isStored)
        return targetNote_->sayFault(writeFault());
    Q_EMIT actionStored(action);
    accept();
}

/// A program may be written with "~" for the home folder; what is stored is its whole path.
QString AddActionViewController::targetText() const
{
    const QString text = parametersTextField->text();
    const bool isInHome =
        selectedKind() == ActionType::executeShellCommand && text.startsWith(u"~/");
    return isInHome ? QDir::homePath() + text.mid(1) : text;
}

void AddActionViewController::checkTarget()
{
    targetNote_->sayFault(warning());
}

QString AddActionViewController::warning() const
{
    const QString text = targetText();
    const auto kind = selectedKind();
    if (text.isEmpty() || !kind || !kind->requiresTarget())
        return {};
    if (*kind == ActionType::openApplication) {
        const bool isKnown = text == QLatin1String(ANY_TERMINAL) ||
                             std::ranges::any_of(applications_, [&text](const Application &each) {
                                 return isNamed(each, text);
                             });
        return isKnown ? QString() : tr("No application of this name is installed.");
    }
    const QFileInfo file(text);
    if (!file.isAbsolute())
        return tr("The path of a program begins with “/”.");
    if (!file.exists())
        return tr("There is no such file.");
    if (file.isDir())
        return tr("This is a folder, not a program.");
    return file.isExecutable() ? QString() : tr("This file may not be run.");
}

void AddActionViewController::offerApplications()
{
    // What is typed next replaces the text.
    parametersTextField->setFocus();
    parametersTextField->selectAll();
    applicationList_->setCompletionPrefix({});
    applicationList_->complete();
}

void AddActionViewController::chooseExecutable()
{
    auto *chooser = new QFileDialog(this, tr("Choose a Program"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFile);
    const QFileInfo current(targetText());
    const bool isPath = current.isAbsolute() && current.dir().exists();
    chooser->setDirectory(isPath ? current.dir() : QDir::home());
    connect(chooser, &QFileDialog::fileSelected, parametersTextField, &QLineEdit::setText);
    arrangeFileDialog(*chooser);
    chooser->open();
}

} // namespace quillon
