#pragma once

#include "actions/ActionModelFinder.h"
#include "app/widgets/FormSheet.h"
#include "platform/ApplicationLauncher.h"

#include <optional>
#include <string>
#include <vector>

class QComboBox;
class QCompleter;
class QLineEdit;
class QPushButton;

namespace quillon {

class FormNote;

/// The sheet that adds an action or changes one: its keys, its kind, and what it works with.
class AddActionViewController : public FormSheet
{
    Q_OBJECT

public:
    struct Services
    {
        DefaultsStore &defaults;
        const ApplicationLauncher &applications;
    };

    /// Changes the action that is given, or adds one. The services outlive this object, which
    /// deletes itself when it is closed.
    AddActionViewController(const Services &services, const std::optional<ActionModel> &changed,
                            QWidget *over);

    /// Stores the action and closes the sheet. As long as a part of it is missing nothing happens,
    /// but for a word about it.
    void doneClicked();

    QComboBox *const shortcutButton;
    QComboBox *const actionButton;
    QLineEdit *const parametersTextField;
    /// Lists the installed applications below the field, which typing narrows, or shows a file
    /// chooser, whichever the kind of action needs.
    QPushButton *const chooseButton;

Q_SIGNALS:
    /// The action was added, or has replaced the one that was changed.
    void actionStored(const ActionModel &action);

private:
    void buildForm();
    void fillMenus();
    void showChanged();
    void kindChanged();
    void offerApplications();
    void chooseExecutable();
    /// The result is absent where it is none of the six.
    std::optional<ActionType> selectedKind() const;
    /// Says beside the field what would come of its text. A warning at most: what is not there now
    /// may be there when the action is carried out.
    void checkTarget();
    QString warning() const;
    QString targetText() const;

    Services services_;
    ActionModelFinder finder_;
    const std::optional<ActionModel> changed_;
    FormNote *shortcutNote_ = nullptr;
    FormNote *targetNote_ = nullptr;
    /// The installed applications and the list of them, which are read when they are first needed.
    std::vector<Application> applications_;
    QCompleter *applicationList_ = nullptr;
};

} // namespace quillon
