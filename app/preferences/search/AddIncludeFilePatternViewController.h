#pragma once

#include "app/widgets/FormSheet.h"

#include <functional>

class QLineEdit;

namespace quillon {

class FormNote;
class SearchBaseFinder;

/// Asks for an extension whose files are indexed as folders are.
class AddIncludeFilePatternViewController : public FormSheet
{
    Q_OBJECT

public:
    using Added = std::function<void(const std::string &extension)>;

    AddIncludeFilePatternViewController(SearchBaseFinder &finder, Added added, QWidget *over);

private:
    void textChanged();
    /// The result is empty when nothing is wrong.
    QString fault() const;
    void confirm();

    SearchBaseFinder &finder_;
    Added added_;
    QLineEdit *extensionTextField_;
    FormNote *note_;
};

} // namespace quillon
