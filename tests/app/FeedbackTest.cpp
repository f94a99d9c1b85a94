#include "app/update/Feedback.h"

#include "tests/support/FakeWorkspace.h"
#include "tests/support/PlainWindowSystem.h"

#include <QApplication>
#include <QLabel>

#include <gmock/gmock.h>

namespace quillon {

using testing::ElementsAre;

namespace {

QStringList shownTexts()
{
    QStringList texts;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible())
            continue;
        for (const auto *label : widget->findChildren<QLabel *>())
            texts += label->text();
    }
    return texts;
}

TEST(Feedback, opensTheAddressOfTheBuild)
{
    FakeWorkspace workspace;
    PlainWindowSystem windowSystem;
    const Feedback::Services services{.workspace = workspace, .windowSystem = windowSystem};
    EXPECT_FALSE(Feedback(services, {}).isTaken());
    Feedback feedback(services, "https://example.org/feedback");
    EXPECT_TRUE(feedback.isTaken());
    feedback.open();
    EXPECT_THAT(workspace.openedLinks, ElementsAre("https://example.org/feedback"));
    EXPECT_FALSE(feedback.isWindowVisible());

    workspace.hasBrowser = false;
    feedback.open();
    EXPECT_TRUE(feedback.isWindowVisible());
    EXPECT_TRUE(shownTexts().join(u' ').contains(u"https://example.org/feedback"));
}

} // namespace

} // namespace quillon
