#include "matching/PathTree.h"

#include "tests/matching/RandomTexts.h"
#include "tests/support/ArrangedTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace quillon {
namespace {

using Flags = PathTree::Flags;

Flags flagsOf(const PathTree &tree, const std::string &text)
{
    const PathTree::NodeId node = tree.find(text);
    constexpr Flags KEPT = PathTree::STORED | PathTree::CANDIDATE | PathTree::LISTED;
    return node == PathTree::NONE ? Flags{0} : static_cast<Flags>(tree.node(node).flags & KEPT);
}

/// Exchanges the tree for an arranged one, and expects each node's children to lie side by side.
void arrange(PathTree &tree)
{
    const std::uint64_t generation = tree.generation();
    arrangeNow(tree);
    EXPECT_NE(tree.generation(), generation);
    std::vector<PathTree::NodeId> parents{PathTree::ROOT};
    while (!parents.empty()) {
        PathTree::NodeId expected = tree.firstChild(parents.back());
        parents.pop_back();
        for (PathTree::NodeId id = expected; id != PathTree::NONE; id = tree.node(id).nextSibling) {
            ASSERT_EQ(id, expected++);
            parents.push_back(id);
        }
    }
}

TEST(PathTree, canBeFilledAtOneGo)
{
    PathTree tree;
    PathTree inserted;
    std::vector<PathTree::NodeId> nodes{PathTree::ROOT};
    for (unsigned i = 0; i < 3000; ++i) {
        const std::string name = std::to_string(i % 3) + static_cast<char>('A' + i * 7 % 60);
        nodes.push_back(tree.appendNew(nodes[i / 3], name, PathTree::CANDIDATE));
        inserted.insert(tree.text(nodes.back()), PathTree::CANDIDATE);
    }
    const auto expectAllFound = [&] {
        for (const PathTree::NodeId node : nodes)
            EXPECT_TRUE(node == PathTree::ROOT || tree.find(tree.text(node)) == node);
        EXPECT_EQ(tree.find("7"), PathTree::NONE);
    };
    tree.endAppending();
    EXPECT_EQ(tree.count(PathTree::CANDIDATE), inserted.count(PathTree::CANDIDATE));
    for (const PathTree::NodeId node : nodes) {
        const auto same = node == PathTree::ROOT ? node : inserted.find(tree.text(node));
        ASSERT_EQ(tree.below(node), inserted.below(same)) << tree.text(node);
        ASSERT_EQ(tree.pairsBelow(tree.node(node)), inserted.pairsBelow(inserted.node(same)))
            << tree.text(node);
    }
    expectAllFound();
    auto table = tree.childTable();
    ASSERT_TRUE(table);
    tree.useTable(std::move(*table));
    expectAllFound();
    EXPECT_EQ(tree.insert(tree.text(nodes.back()), 0), nodes.back()) << "it is there";
    const PathTree::NodeId added = tree.insert("new", PathTree::CANDIDATE);
    EXPECT_EQ(tree.find("new"), added);
    tree.appendNew(nodes[7], tree.name(tree.node(nodes[7 * 3 + 1])), 0);
    EXPECT_FALSE(tree.childTable()) << "two children of one name";
}

TEST(PathTree, givesEveryTextBackByteForByte)
{
    PathTree tree;
    const std::vector<std::string> texts = {"",
                                            "/",
                                            "//",
                                            "a",
                                            "a/",
                                            "a//b",
                                            "/a",
                                            "/a/b",
                                            "/a b",
                                            "/a-b",
                                            "/a.b/",
                                            "///",
                                            "a/b",
                                            "/\xff",
                                            std::string(70'000, 'n'),
                                            "/x/" + std::string(300'000, 'm')};
    for (const std::string &text : texts)
        EXPECT_EQ(tree.text(tree.insert(text, PathTree::CANDIDATE)), text);
    EXPECT_EQ(tree.count(PathTree::CANDIDATE), texts.size());
    for (const std::string &text : texts)
        EXPECT_EQ(flagsOf(tree, text), PathTree::CANDIDATE);
    EXPECT_EQ(tree.find("/x"), tree.node(tree.find(texts.back())).parent);
    EXPECT_EQ(tree.find("/y"), PathTree::NONE);
}

TEST(PathTree, comparesAsWholeTextsDo)
{
    PathTree tree;
    RandomTexts random(7);
    std::vector<std::string> texts = {"/a", "/a/b", "/a b", "/a-b/c", "/a.b", "/ab", "/a/", ""};
    for (int i = 0; i < 200; ++i)
        texts.push_back(random.text());
    std::vector<PathTree::NodeId> nodes;
    for (const std::string &text : texts)
        nodes.push_back(tree.insert(text, PathTree::CANDIDATE));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t k = 0; k < texts.size(); ++k)
            ASSERT_EQ(tree.compareTexts(nodes[i], nodes[k]), texts[i] <=> texts[k])
                << texts[i] << " and " << texts[k];
    }
}

TEST(PathTree, staysEqualToAMapUnderRandomEdits)
{
    PathTree tree;
    std::map<std::string, Flags> model;
    RandomTexts random(11);
    const auto randomFlags = [&] { return static_cast<Flags>(1 + random.below(7)); };
    std::vector<std::string> known;
    for (int round = 0; round < 60; ++round) {
        // Some rounds add and some remove, enough of both to have dead nodes collected.
        const bool adding = round % 4 < 2;
        for (int i = 0; i < 600; ++i) {
            const Flags flags = randomFlags();
            if (adding) {
                known.push_back(random.text());
                tree.insert(known.back(), flags);
                model[known.back()] |= flags;
                continue;
            }
            const std::string &text = known[random.below(known.size())];
            const PathTree::NodeId node = tree.find(text);
            if (node != PathTree::NONE)
                tree.removeFlags(node, flags);
            model[text] &= static_cast<Flags>(~flags);
        }
        std::size_t stored = 0;
        for (const auto &[text, flags] : model) {
            ASSERT_EQ(flagsOf(tree, text), flags) << text;
            stored += flags & PathTree::STORED;
        }
        ASSERT_EQ(tree.count(PathTree::STORED), stored);
        if (round % 7 == 6)
            arrange(tree);
    }
}

TEST(PathTree, givesUpAnArrangementThatIsNotWanted)
{
    PathTree tree;
    for (int i = 0; i < 20'000; ++i)
        tree.insert("/" + std::to_string(i % 100) + "/" + std::to_string(i), PathTree::CANDIDATE);
    EXPECT_TRUE(tree.isScattered());
    PathTree arranged;
    int questions = 0;
    EXPECT_FALSE(arranged.arrange(tree, [&] { return ++questions < 3; }));
    EXPECT_EQ(questions, 3);
    arrange(tree);
    EXPECT_FALSE(tree.isScattered());
}

TEST(PathTree, usesTheRoomOfRemovedTextsAgain)
{
    PathTree tree;
    const auto fillAndEmpty = [&tree] {
        for (int i = 0; i < 20'000; ++i)
            tree.insert("/folder/" + std::to_string(i), PathTree::CANDIDATE);
        // One folder with many children: removals must not walk them again and again.
        for (int i = 0; i < 20'000; ++i)
            tree.removeFlags(tree.find("/folder/" + std::to_string(i)), PathTree::CANDIDATE);
    };
    fillAndEmpty();
    const std::size_t bytes = tree.bytes();
    for (int round = 0; round < 5; ++round)
        fillAndEmpty();
    EXPECT_LT(tree.bytes(), bytes * 5 / 4);
    EXPECT_EQ(tree.count(PathTree::CANDIDATE), 0U);
}

TEST(PathTree, keepsANameOnceForAllFoldersThatHaveIt)
{
    PathTree tree;
    const auto nameOf = [&tree](const char *text) { return tree.node(tree.find(text)).name; };
    for (const char *text : {"/a/\xc3\xbc", "/b/\xc3\xbc", "/\xc3\xbc/a"})
        tree.insert(text, PathTree::CANDIDATE);
    const NameTable::Id name = nameOf("/a/\xc3\xbc");
    EXPECT_EQ(nameOf("/\xc3\xbc"), name);
    EXPECT_EQ(tree.names().uses(name), 3U);
    EXPECT_EQ(tree.names().folded(name), std::string_view("u\0", 2));
    tree.removeFlags(tree.find("/a/\xc3\xbc"), PathTree::CANDIDATE);
    tree.collectSomeDead(10);
    EXPECT_EQ(tree.names().uses(name), 2U);
    EXPECT_EQ(tree.text(tree.find("/b/\xc3\xbc")), "/b/\xc3\xbc");
    arrange(tree);
    EXPECT_EQ(tree.names().uses(nameOf("/\xc3\xbc")), 2U);
    EXPECT_EQ(tree.names().folded(nameOf("/b/\xc3\xbc")), std::string_view("u\0", 2));
}

TEST(PathTree, keepsTheLinksOfRemovedNodesWhilePinned)
{
    PathTree tree;
    const PathTree::NodeId folder = tree.insert("/f", PathTree::STORED);
    for (int i = 0; i < 10'000; ++i)
        tree.insertChild(folder, "before" + std::to_string(i), PathTree::CANDIDATE);
    const PathTree::NodeId standing = tree.findChild(folder, "before5000");
    tree.pin();
    for (int i = 0; i < 10'000; ++i) {
        if (i != 7017)
            tree.removeFlags(tree.findChild(folder, "before" + std::to_string(i)),
                             PathTree::CANDIDATE);
        tree.insertChild(folder, "after" + std::to_string(i), PathTree::CANDIDATE);
    }
    // A search that was at a removed node continues with what is left of the list behind it.
    EXPECT_EQ(tree.text(standing), "/f/before5000");
    bool meetsSurvivor = false;
    for (PathTree::NodeId id = standing; id != PathTree::NONE; id = tree.node(id).nextSibling)
        meetsSurvivor = meetsSurvivor || tree.text(id) == "/f/before7017";
    EXPECT_TRUE(meetsSurvivor);
    tree.unpin();
}

TEST(PathTree, keepsDeadNodesInPlaceWhileHeld)
{
    PathTree tree;
    tree.hold();
    const PathTree::NodeId folder = tree.insert("/f", PathTree::STORED);
    std::vector<PathTree::NodeId> nodes;
    for (int i = 0; i < 10'000; ++i)
        nodes.push_back(tree.insertChild(folder, std::to_string(i), i % 2 == 0 ? 0 : 3));
    for (const PathTree::NodeId node : nodes)
        tree.removeFlags(node, 3);
    EXPECT_FALSE(tree.collectSomeDead(1));
    tree.addFlags(nodes[4], PathTree::CANDIDATE);
    EXPECT_EQ(tree.find("/f/4"), nodes[4]);
    EXPECT_EQ(tree.find("/f/5"), nodes[5]);

    tree.letGo();
    while (tree.collectSomeDead(1)) {
    }
    EXPECT_EQ(tree.find("/f/4"), nodes[4]);
    EXPECT_EQ(tree.find("/f/5"), PathTree::NONE);
    EXPECT_EQ(tree.count(PathTree::CANDIDATE), 1U);
}

} // namespace
} // namespace quillon
