#include "core/SearchBasePaths.h"

#include "tests/support/ArrangedTree.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

/// A store with one change or question at a time.
class Store
{
public:
    template <typename Change>
    auto write(const Change &change) NO_THREAD_SAFETY_ANALYSIS
    {
        const WritingIndex writing(index_.lock);
        return change(paths_);
    }
    void add(std::string_view path)
    {
        write([&](SearchBasePaths &paths) NO_THREAD_SAFETY_ANALYSIS { paths.add(path); });
    }
    /// Returns the lines for the log.
    std::vector<std::string> remove(std::string_view path)
    {
        std::vector<std::string> log;
        write([&](SearchBasePaths &paths) NO_THREAD_SAFETY_ANALYSIS { paths.remove(path, log); });
        return log;
    }
    std::vector<std::string> paths() NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        std::vector<std::string> texts;
        paths_.paths().forEach([&](std::string_view path) { texts.emplace_back(path); });
        EXPECT_EQ(texts.size(), paths_.paths().count());
        for (const std::string &text : texts)
            EXPECT_TRUE(paths_.paths().contains(text)) << text;
        return texts;
    }
    std::vector<std::string> sortedPaths() NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        std::vector<std::string> texts;
        SortedPathWalk walk(index_.tree, SortedPathWalk::Of::paths);
        for (auto node = walk.next(); node != PathTree::NONE; node = walk.next())
            texts.push_back(index_.tree.text(node));
        return texts;
    }
    std::vector<std::string> parents() NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        std::vector<std::string> texts;
        paths_.parentToChildren().forEach([&](std::string_view path) { texts.emplace_back(path); });
        EXPECT_EQ(texts.size(), paths_.parentToChildren().count());
        return texts;
    }
    std::optional<std::vector<std::string>> children(std::string_view of) NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        return paths_.parentToChildren().children(of);
    }
    std::string description() NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        return paths_.treeMappingDescription();
    }
    std::size_t candidates() NO_THREAD_SAFETY_ANALYSIS
    {
        const ReadingIndex reading(index_.lock);
        return index_.tree.count(PathTree::CANDIDATE);
    }

private:
    PathIndex index_;
    SearchBasePaths paths_{index_};
};

TEST(StringPathParent, dropsTheLastComponent)
{
    for (const auto &[path, parent] :
         std::vector<std::pair<std::string, std::string>>{{"/a/b", "/a"},
                                                          {"/a/b/", "/a"},
                                                          {"/a/b//", "/a"},
                                                          {"/a//b", "/a"},
                                                          {"/a", "/"},
                                                          {"/a/", "/"},
                                                          {"/", "/"},
                                                          {"//", "/"},
                                                          {"/a/../b", "/a/.."},
                                                          {"a/b", "a"},
                                                          {"a", "."},
                                                          {"", "."},
                                                          {"/\xff\n/ ", "/\xff\n"}})
        EXPECT_EQ(StringPathParent::getParentFolderPath(path), parent) << path;
    for (const auto &[path, normalized] : std::vector<std::pair<std::string, std::string>>{
             {"/a/b//", "/a/b/"}, {"/a/", "/a"}, {"//", "/"}, {"/", "/"}, {"", ""}, {"a", "a"}})
        EXPECT_EQ(normalizePath(path), normalized) << path;
}

TEST(SearchBasePaths, makesOperationsForAFolderAndWhatWasFoundInIt)
{
    EXPECT_THAT(makeInsertionOperations("/a/b/", std::vector<std::string>{"/a/b/c", "/a/b/c/d/"}),
                ElementsAre(SearchBasePathsInsertionOperation{"/a/b", "/a"},
                            SearchBasePathsInsertionOperation{"/a/b/c", "/a/b"},
                            SearchBasePathsInsertionOperation{"/a/b/c/d", "/a/b/c"}));
}

TEST(SearchBasePaths, listsWhatItStoresUnderTheParent)
{
    Store store;
    EXPECT_EQ(store.description(), "");
    for (const char *path : {"/a/b/", "/a/b", "/A/b", "/", "rel"})
        store.add(path);
    EXPECT_THAT(store.sortedPaths(), ElementsAre("/", "/A/b", "/a/b", "rel"));
    EXPECT_THAT(store.parents(), ElementsAre(".", "/", "/A", "/a"));
    EXPECT_THAT(store.children("/a"), Optional(ElementsAre("/a/b")));
    EXPECT_THAT(store.children("/"), Optional(ElementsAre("/")));
    EXPECT_EQ(store.children("/a/b"), std::nullopt);
    EXPECT_EQ(store.candidates(), 0U);
}

TEST(SearchBasePaths, keepsARemovedFolderListedUnderItsParent)
{
    Store store;
    for (const char *path : {"/a/b", "/a/b/c", "/a/b/c/d"})
        store.add(path);
    EXPECT_THAT(store.remove("/a/b/"), ElementsAre("sbp_remove: /a/b"));
    EXPECT_THAT(store.paths(), UnorderedElementsAre("/a/b/c", "/a/b/c/d"));
    EXPECT_THAT(store.children("/a"), Optional(ElementsAre("/a/b")));
    EXPECT_THAT(store.children("/a/b"), Optional(IsEmpty()));
    EXPECT_THAT(store.children("/a/b/c"), Optional(ElementsAre("/a/b/c/d")));

    EXPECT_THAT(store.remove("/never/added"), ElementsAre("sbp_remove: /never/added"));
    EXPECT_THAT(store.children("/never/added"), Optional(IsEmpty()));
    EXPECT_EQ(store.children("/never"), std::nullopt);
}

TEST(SearchBasePaths, describesTheMapAscendingByParent)
{
    Store store;
    for (const char *path : {"/Users", "/Users/a/Docs", "/Users/a/Pictures", "/Users/a b/x"})
        store.add(path);
    store.remove("/Users/a/Docs");
    store.remove("");
    EXPECT_EQ(store.description(), ": \n\t\n"
                                   "/: \n\t/Users\n"
                                   "/Users/a: \n\t/Users/a/Docs\n\t/Users/a/Pictures\n"
                                   "/Users/a b: \n\t/Users/a b/x\n"
                                   "/Users/a/Docs: \n\t");
}

/// Keeps in plain containers what the store promises.
struct Model
{
    std::set<std::string> paths;
    std::map<std::string, std::set<std::string>> children;

    void insert(const std::string &path, const std::string &parent)
    {
        paths.insert(path);
        children[parent].insert(path);
    }
    void remove(const std::string &path)
    {
        paths.erase(path);
        children[path].clear();
    }
};

class SearchBasePathsModel : public testing::TestWithParam<unsigned>
{
protected:
    std::string randomPath()
    {
        static const std::vector<std::string> NAMES = {"a", "b", "a b", "a-", "a.b", "", "\xff"};
        std::string path = random_() % 8 == 0 ? "r" : "";
        for (auto depth = random_() % 4; depth > 0; --depth)
            path += "/" + NAMES[random_() % NAMES.size()];
        return random_() % 16 == 0 ? path + "/" : path;
    }
    void change()
    {
        const std::string path = randomPath();
        const std::string normalized(normalizePath(path));
        const std::string parent(normalizePath(StringPathParent::getParentFolderPath(normalized)));
        switch (random_() % 5) {
        case 0:
            store_.add(path);
            model_.insert(normalized, parent);
            break;
        case 1: {
            // A caller may make any path the parent of any other.
            const bool isOdd = random_() % 4 == 0;
            const std::string other = isOdd ? randomPath() : parent;
            const SearchBasePathsInsertionOperation operation{normalized, other};
            store_.write([&](SearchBasePaths &paths)
                             NO_THREAD_SAFETY_ANALYSIS { paths.insert(std::span(&operation, 1)); });
            model_.insert(normalized, other);
            break;
        }
        case 2:
            store_.remove(path);
            model_.remove(normalized);
            break;
        case 3:
            store_.write([](SearchBasePaths &paths)
                             NO_THREAD_SAFETY_ANALYSIS { arrangeNow(paths.mutableTree()); });
            break;
        default:
            // Candidates come and go on their own.
            store_.write([&](SearchBasePaths &paths) NO_THREAD_SAFETY_ANALYSIS {
                auto &tree = paths.mutableTree();
                if (candidates_.erase(path) != 0)
                    tree.removeFlags(tree.find(path), PathTree::CANDIDATE);
                else if (candidates_.insert(path).second)
                    tree.insert(path, PathTree::CANDIDATE);
            });
        }
    }
    void compare()
    {
        EXPECT_THAT(store_.paths(), UnorderedElementsAreArray(model_.paths));
        EXPECT_EQ(store_.sortedPaths(), std::vector(model_.paths.begin(), model_.paths.end()));
        EXPECT_EQ(store_.candidates(), candidates_.size());
        std::vector<std::string> parents;
        std::size_t lines = 0;
        for (const auto &[parent, children] : model_.children) {
            parents.push_back(parent);
            EXPECT_THAT(store_.children(parent), Optional(UnorderedElementsAreArray(children)));
            lines += 1 + std::max<std::size_t>(children.size(), 1);
        }
        EXPECT_EQ(store_.parents(), parents);
        const std::string text = store_.description();
        EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1, lines);
    }

    std::mt19937 random_{GetParam()};
    Store store_;
    Model model_;
    std::set<std::string> candidates_;
};

TEST_P(SearchBasePathsModel, behavesAsPlainSetsAndMaps)
{
    for (int round = 0; round < 40 && !HasFailure(); ++round) {
        for (int i = 0; i < 20; ++i)
            change();
        compare();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SearchBasePathsModel, testing::Range(1U, 9U));

} // namespace

} // namespace quillon
