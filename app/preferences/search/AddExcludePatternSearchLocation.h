#pragma once

#include "app/widgets/FormSheet.h"
#include "core/PatternHits.h"

#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

class QLineEdit;

namespace quillon {

class FormNote;
class SearchBaseFinder;
class TaskQueue;
struct PathIndex;

/// Asks for a text that keeps folders out of the index, and shows beforehand which indexed folders
/// it would remove. A text that would leave nothing is added only after the user has seen that.
class AddExcludePatternSearchLocation : public FormSheet
{
    Q_OBJECT

public:
    struct Services
    {
        SearchBaseFinder &searchBaseFinder;
        /// It outlives the tasks on the background queue.
        const PathIndex &index;
        TaskQueue &background;
        TaskQueue &main;
    };

    using Added = std::function<void(const std::string &pattern)>;

    /// Proposes the pattern, where it is not empty.
    AddExcludePatternSearchLocation(const Services &services, const std::string &proposed,
                                    Added added, QWidget *over);
    ~AddExcludePatternSearchLocation() override;

private:
    struct Answer
    {
        std::string pattern;
        PatternHits hits;
    };

    std::string pattern() const;
    bool isListed(const std::string &pattern) const;
    void textChanged();
    void findHits();
    void hitsFound(Answer answer);
    void showHits(const PatternHits &hits);
    void confirm();
    void add();

    Services services_;
    Added added_;
    QLineEdit *patternTextField_;
    FormNote *note_;
    /// Runs out once typing has settled.
    QTimer settled_;
    std::stop_source search_;
    std::optional<Answer> answer_;
    /// True when the user wants the pattern added as soon as its hits are known.
    bool isConfirmed_ = false;
};

} // namespace quillon
