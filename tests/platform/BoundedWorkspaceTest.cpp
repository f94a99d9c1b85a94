#include "platform/linux/applications/BoundedWorkspace.h"

#include <gmock/gmock.h>

#include <semaphore>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A workspace on which every item is a folder behind a link. A question about an item below
/// "/dead" hangs until the test is over.
class Workspaces : public Workspace
{
public:
    bool open(const std::string &path) override { return answer(path); }
    bool openLink(const std::string &address) override { return address == "https://here"; }
    std::string applicationToOpen(const std::string &path) const override
    {
        return answer(path) ? "files.desktop" : "";
    }
    std::vector<std::string> iconNames(const std::string &path) const override
    {
        answer(path);
        return {"folder"};
    }
    bool isFolder(const std::string &path) const override { return answer(path); }
    std::string resolvingSymlinks(const std::string &path) const override
    {
        answer(path);
        return "/target" + path;
    }

    void end(int waiting)
    {
        over_.release(waiting);
        for (int i = 0; i < waiting; ++i)
            ended_.acquire();
    }

private:
    bool answer(const std::string &path) const
    {
        if (path.starts_with("/dead")) {
            over_.acquire();
            ended_.release();
        }
        return true;
    }

    mutable std::counting_semaphore<> over_{0};
    mutable std::counting_semaphore<> ended_{0};
};

TEST(BoundedWorkspace, handsOnWhatIsAsked)
{
    Workspaces workspaces;
    BoundedCalls calls;
    BoundedWorkspace patient(workspaces, calls, 60s);
    EXPECT_TRUE(patient.open("/here"));
    EXPECT_TRUE(patient.openLink("https://here"));
    EXPECT_FALSE(patient.openLink("https://there"));
    EXPECT_EQ(patient.applicationToOpen("/here"), "files.desktop");
    EXPECT_THAT(patient.iconNames("/here"), ElementsAre("folder"));
    EXPECT_TRUE(patient.isFolder("/here"));
    EXPECT_EQ(patient.resolvingSymlinks("/here"), "/target/here");
}

TEST(BoundedWorkspace, takesWhatDoesNotAnswerForGone)
{
    Workspaces workspaces;
    {
        BoundedCalls calls({.silence = 0ms});
        BoundedWorkspace impatient(workspaces, calls, 20ms);
        EXPECT_FALSE(impatient.open("/dead/a"));
        EXPECT_EQ(impatient.applicationToOpen("/dead/a"), "");
        EXPECT_THAT(impatient.iconNames("/dead/a"), IsEmpty());
        EXPECT_FALSE(impatient.isFolder("/dead/a"));
        EXPECT_EQ(impatient.resolvingSymlinks("/dead/a"), "/dead/a");
    }
    workspaces.end(5);
}

} // namespace

} // namespace quillon
