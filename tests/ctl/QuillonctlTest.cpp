// Runs the real program through the shell, in a folder and with settings of its own.

#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace quillon {

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

using Bytes = std::string;

/// Returns a string literal with the NUL bytes in it.
template <std::size_t SIZE>
Bytes bytes(const char (&text)[SIZE])
{
    return {text, SIZE - 1};
}

struct Ending
{
    int status = -1;
    Bytes out;
    std::string err;
};

class Session
{
public:
    Session()
    {
        disk_.makeFolder("work");
        disk_.makeFolder("home");
        disk_.makeFolder("config");
        disk_.makeFolder("runtime");
    }
    /// Runs the line in a shell with "pipefail", where the program is called "ctl".
    Ending run(const std::string &line) const
    {
        disk_.writeFile("line", "set -o pipefail; ctl() { " QUILLONCTL " \"$@\"; }\n" + line);
        const std::string command =
            "cd " + disk_.path("work") + " && env HOME=" + disk_.path("home") +
            " XDG_CONFIG_HOME=" + disk_.path("config") +
            " XDG_RUNTIME_DIR=" + disk_.path("runtime") + " timeout 60 bash " + disk_.path("line") +
            " >" + disk_.path("out") + " 2>" + disk_.path("err");
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), disk_.readFile("out"), disk_.readFile("err")};
    }
    const TemporaryFolder &disk() const { return disk_; }

private:
    TemporaryFolder disk_;
};

struct Row
{
    const char *name;
    std::string line;
    Bytes out;
    int status = 0;
    /// A part of standard error. If it is empty, nothing may be printed there.
    std::string err = {};

    friend std::ostream &operator<<(std::ostream &stream, const Row &row)
    {
        return stream << row.line;
    }
};

std::string nameOf(const testing::TestParamInfo<Row> &row)
{
    return row.param.name;
}

class CommandRows : public testing::TestWithParam<Row>
{};

TEST_P(CommandRows, endAsExpected)
{
    const Ending ending = Session().run(GetParam().line);
    EXPECT_EQ(ending.status, GetParam().status) << ending.err;
    EXPECT_EQ(ending.out, GetParam().out);
    const bool quiet = GetParam().err.empty();
    EXPECT_THAT(ending.err, quiet ? testing::Matcher<std::string>("") : HasSubstr(GetParam().err));
    if (ending.status == 2) {
        EXPECT_THAT(ending.err, MatchesRegex("quillonctl: [^\n]+\n")) << "one line";
    }
}

INSTANTIATE_TEST_SUITE_P(
    Answers, CommandRows,
    testing::Values(
        Row{"ranksAndMarks",
            "printf '/u/d/o/c/s\\n/u/docs\\n/v\\n' | ctl match --scores docs | cut -f 2,3",
            "/u/docs\t3:4\n/u/d/o/c/s\t\n"},
        Row{"lastLineNeedsNoEnd", "printf /u/docs | ctl match --scores docs | cut -f 2",
            "/u/docs\n"},
        Row{"emptyLinesAreNoCandidates", "printf '\\n\\nab\\n\\n' | ctl match '' | wc -l", "1\n"},
        Row{"noInput", "ctl match x </dev/null", ""},
        Row{"nulSeparated",
            "printf 'a\\nb\\0\\0abc\\0' | ctl match --scores -0 ab | tr '\\0\\n' '\\n_' | cut -f 2",
            "abc\na_b\n"},
        Row{"oddBytes", "printf '/\\377\\r\\t\\342\\202x\\n' | ctl match --scores x | cut -f 2-",
            bytes("/\377\r\t\342\202x\t\n")},
        Row{"nulInALine", "printf '/a\\0b\\n' | ctl match --scores b | cut -f 2", bytes("/a\0b\n")},
        Row{"dumpOnDemand", "mkdir a; echo | ctl watch --dump a | sed 's:.*/::'", "a\n.\n"},
        Row{"hiddenFolders",
            "mkdir -p a/.b/harbour; ctl find --in . harbour;"
            " ctl find --in . --hidden --relative harbour",
            "a/.b/harbour\n"},
        Row{"top", "printf 'ab\\nabc\\nabcd\\n' | ctl match --scores --top 2 ab | cut -f 2",
            "ab\nabc\n"},
        Row{"byTheWholePath",
            "printf '/u/ab\\n/ab/u\\n' | ctl match --scores --order path ab | cut -f 2,3",
            "/ab/u\t1:2\n/u/ab\t3:2\n"},
        Row{"namesFirst", "printf '/u/ab\\n/ab/u\\n' | ctl match --scores --order names ab",
            "1.6\t/u/ab\t3:2\n1.09\t/ab/u\t1:2\n"},
        Row{"wordsInAnyOrder",
            "printf '/Übe/äh\n/ähübe\n/übe\n' | ctl match --scores --words 'ah ube' | cut -f 2,3",
            "/Übe/äh\t1:3,5:2\n/ähübe\t1:5\n"},
        Row{"wordsAsTyped", "printf '/a b\n/b a\n' | ctl match --scores 'a b' | cut -f 2",
            "/a b\n"},
        Row{"topByItsLetter", "printf 'ab\\nabc\\n' | ctl match -n 1 ab", "ab\n"},
        Row{"plainPaths", "printf '/u/x/d\\n/d/\\377\\n' | ctl match d",
            bytes("/d/\377\n/u/x/d\n")},
        Row{"asJson", "printf '/u/dc\\n/dc/\\377\\n' | ctl match --json dc | tr -d '0-9.'",
            "[{\"path\":\"/dc/\\udcff\",\"ranges\":[[,]],\"score\":},"
            "{\"path\":\"/u/dc\",\"ranges\":[[,]],\"score\":}]\n"},
        Row{"usesAreCounted",
            "mkdir d; ctl use d/ ./d/../d && ctl use d && tr -d ' ' "
            "<../config/quillon/quillon.json "
            "| grep -c \"^\\\"$PWD/d\\\":3$\"",
            "1\n"},
        Row{"usesAtOnceAllCount",
            "mkdir d; for i in $(seq 12); do ctl use d & done; wait; "
            "grep -c \"^ *\\\"$PWD/d\\\": 12$\" ../config/quillon/quillon.json",
            "1\n"},
        Row{"topZero", "echo ab | ctl match --top 0 ab", ""},
        Row{"negativeInfinity",
            "head -c 1100 /dev/zero | tr '\\0' a | ctl match --scores a | cut -f 1", "-inf\n"},
        Row{"queryLikeAnOption", "echo /-0 | ctl match --scores -- -0 | cut -f 2", "/-0\n"},
        Row{"queryLikeACommand", "echo /find | ctl match --scores find | cut -f 2", "/find\n"},
        Row{"queryLikeAList", "echo '/[a,b]' | ctl match --scores '[a,b]' | cut -f 2", "/[a,b]\n"},
        Row{"counts",
            "echo '{\"/b\\udcff\": 3, \"/c\": \"no\", \"/d\": -1}' >c.json;"
            "printf '/a\\n/b\\377\\n' | ctl match --scores --counts c.json / | cut -f 2",
            "/b\377\n/a\n"},
        Row{"readerThatLeaves",
            "seq 20000 | sed 's/^/dir/' | ctl match --top 20000 d | head -n 1 | wc -l", "1\n"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Failures, CommandRows,
    testing::Values(
        Row{"noCommand", "ctl", "", 2, "subcommand"},
        Row{"unknownCommand", "ctl fnd x", "", 2, "\"fnd\"; did you mean \"find\"?"},
        Row{"nothingLikeACommand", "ctl grep", "", 2, "\"grep\"; the commands are match, find, "},
        Row{"commandOnTwoLines", "ctl $'a\nb'", "", 2, "\"a b\""},
        Row{"noQuery", "ctl match </dev/null", "", 2, "QUERY"},
        Row{"twoQueries", "ctl match a b </dev/null", "", 2, "b"},
        Row{"unknownOption", "ctl match --bogus a </dev/null", "", 2, "--bogus"},
        Row{"topIsNegative", "ctl match --top -1 a </dev/null", "", 2, "--top"},
        Row{"topIsHuge", "ctl match --top 99999999999999999999 a </dev/null", "", 2, "--top"},
        Row{"topIsNoNumber", "ctl match --top 0x5 a </dev/null", "", 2, "--top"},
        Row{"orderIsUnknown", "ctl find --order best a", "", 2, "best"},
        Row{"shellIsUnknown", "ctl init csh", "", 2, "csh"},
        Row{"useOfNothing", "ctl use nowhere", "", 1, "nowhere"},
        Row{"nothingIsToBeOpened", "ctl open nowhere", "", 1, "nowhere: is not there"},
        Row{"aFileIsToBeOpened", "touch a.txt; ctl open a.txt", "", 1, "a.txt: is no folder"},
        Row{"nothingIsNamedToBeOpened", "ctl open", "", 2, "PATH"},
        Row{"noBusToOpenThrough",
            "touch e.xcodeproj; unset DBUS_SESSION_BUS_ADDRESS; ctl open e.xcodeproj", "", 1,
            "no session bus"},
        Row{"heightIsTooSmall", "ctl pick --height 1", "", 2, "--height"},
        Row{"settingsHaveAMistake",
            "mkdir -p ../config/quillon; echo '{,}' >../config/quillon/quillon.json; mkdir d; "
            "ctl use d; cat ../config/quillon/quillon.json",
            "{,}\n", 0, "could not be stored"},
        Row{"repeatIsZero", "ctl match --repeat 0 a </dev/null", "", 2, "--repeat"},
        Row{"lineFeedInTheWrongPlace", "ctl match a $'b\\nc' </dev/null", "", 2, "b c"},
        Row{"countsAreMissing", "ctl match --counts no.json a </dev/null", "", 2, "no.json"},
        Row{"countsAreNoObject", "echo '[1]' >c.json; ctl match --counts c.json a </dev/null", "",
            2, "c.json"},
        Row{"inputIsAFolder", "ctl match a <.", "", 1, "standard input"},
        Row{"diskIsFull", "echo a | ctl match a >/dev/full", "", 1, "standard output"},
        Row{"hiddenWithoutAFolder", "ctl find --hidden a", "", 2, "--in"},
        Row{"nothingToWatch", "ctl watch nowhere", "", 1, "nowhere"},
        Row{"folderIsMissing", "ctl find --in nowhere a", "", 2, "nowhere"},
        Row{"nothingIsFound", "ctl find --in . zzz", "", 1},
        Row{"nothingIsFoundForJson", "ctl find --in . --json zzz", "[]\n", 1},
        Row{"answerIsLost", "ctl find --in . work >/dev/full", "", 2, "standard output"},
        Row{"noWordToFind", "ctl find --in .", "", 2, "QUERY"}),
    nameOf);

TEST(Match, tellsItsStatisticsInOneLastLine)
{
    const Ending ending = Session().run("printf 'a\\nb\\n\\n' | ctl match --stats --repeat 3 a");
    EXPECT_EQ(ending.status, 0);
    EXPECT_THAT(ending.err, MatchesRegex("\\{\"candidates\": 2, \"bytesPerCandidate\": [0-9.]+, "
                                         "\"milliseconds\": \\[[0-9.e-]+, [0-9.e-]+, "
                                         "[0-9.e-]+\\]\\}\n"));
}

/// Returns a line that makes a tree, crawls it and shows what was printed.
std::string crawl(const std::string &arguments)
{
    return "mkdir -p d/a/b d/.h d/node_modules/x d/Library/x 'd/[p,q]' d/z.app/in; touch d/a/f.txt "
           "d/a/f.TXT d/z.app/f.txt; ctl crawl " +
           arguments + R"( | sort | sed "s|$PWD/||")";
}

INSTANTIATE_TEST_SUITE_P(
    Crawls, CommandRows,
    testing::Values(
        Row{"foldersAndFiles", crawl("--ext txt --ext no d/"),
            "d\nd/Library\nd/[p,q]\nd/a\nd/a/b\nd/a/f.txt\nd/z.app\n"},
        Row{"withoutDefaults", crawl("--no-default-excludes d"),
            "d\nd/Library\nd/[p,q]\nd/a\nd/a/b\nd/node_modules\nd/node_modules/x\nd/z.app\n"},
        Row{"withoutAnyPattern",
            crawl("--no-default-excludes --no-builtin-excludes d | grep -c '/x$'"), "2\n"},
        Row{"excludes", crawl("--exclude z.a --exclude '[p' --exclude a/b --threads 1 d"),
            "d\nd/Library\nd/a\n"},
        Row{"folderThatHoldsThePattern", crawl("--exclude d/a d d/a"),
            "d\nd/Library\nd/[p,q]\nd/a\n"
            "d/a/b\nd/z.app\n"},
        Row{"foldersWithinEachOther", crawl("d 'd/[p,q]' d/a/b d | uniq -d"), ""},
        Row{"endsWithNul", crawl("-0 d/a | tr '\\0\\n' '\\n!'"), "d/a\nd/a/b\n"},
        Row{"package", crawl("d/z.app"), "d/z.app\n"},
        Row{"missing", crawl("nowhere d/a"), "d/a\nd/a/b\n", 1,
            "nowhere No such file or directory"},
        Row{"file", crawl("d/a/f.txt"), "", 1, "d/a/f.txt Not a directory"},
        Row{"noFolder", "ctl crawl", "", 2, "DIR"},
        Row{"noThreads", "ctl crawl --threads 0 .", "", 2, "from 1 to 64: 0"},
        Row{"tooManyThreads", "ctl crawl --threads 4294967297 .", "", 2, "--threads"},
        Row{"leftByItsReader", "ctl crawl /usr | head -n 1 | wc -l", "1\n"}),
    nameOf);

TEST(Crawl, tellsItsStatisticsInOneLine)
{
    const Ending ending = Session().run(crawl("--stats --ext txt d nowhere d"));
    EXPECT_EQ(ending.status, 1);
    EXPECT_THAT(ending.err, MatchesRegex("quillonctl: [^\n]*\n\\{\"folders\": 6, \"files\": 1, "
                                         "\"errors\": 1, \"seconds\": [0-9.e-]+, "
                                         "\"bytesPerFolder\": [0-9.]+\\}\n"));
}

class FindTest : public testing::Test
{
protected:
    FindTest()
    {
        session_.disk().makeFolder("work/[a,b]/alpha");
        session_.disk().makeFolder("work/odd \xff\n/alpha");
        session_.disk().makeFolder("work/node_modules/alpha");
        session_.disk().makeFolder("home/alpha");
    }
    Session session_;
    std::string work_ = session_.disk().path("work");
    std::string home_ = session_.disk().path("home");
};

TEST_F(FindTest, crawlsExactlyTheFoldersGiven)
{
    const Ending ending = session_.run("ctl find --in '[a,b]/../[a,b]/' --in ./*$'\\n' -0 alpha");
    EXPECT_EQ(ending.status, 0) << ending.err;
    EXPECT_EQ(ending.out, work_ + "/[a,b]/alpha" + '\0' + work_ + "/odd \xff\n/alpha" + '\0');
}

TEST_F(FindTest, writesNamesAsJsonThatGivesBackTheBytes)
{
    const Ending ending = session_.run("ctl find --in . --json --top 1 odd");
    EXPECT_THAT(ending.out, MatchesRegex("\\[\\{\"path\":\".*/odd \\\\udcff\\\\n\",\"ranges\":"
                                         "\\[\\[[0-9]+,3\\]\\],\"score\":[0-9.]+\\}\\]\n"));
}

TEST_F(FindTest, takesTheConfiguredFoldersElseTheHomeFolder)
{
    EXPECT_EQ(session_.run("ctl find alpha").out, home_ + "/alpha\n");

    const std::string inside = work_ + "/[a,b]";
    session_.disk().writeFile("config/quillon/quillon.json",
                              R"({"qln-bookmarks": {")" + inside + R"(": ")" + inside +
                                  R"("}, "recent-access-score-data": {}})");
    const std::string before = session_.disk().readFile("config/quillon/quillon.json");
    EXPECT_EQ(session_.run("ctl find alpha").out, inside + "/alpha\n");
    EXPECT_EQ(session_.disk().readFile("config/quillon/quillon.json"), before);
}

TEST_F(FindTest, searchesNoOtherFoldersWhereTheSettingsHaveAMistake)
{
    session_.disk().writeFile("config/quillon/quillon.json", "{\n\"qln-bookmarks\": {},\n}");
    const Ending ending = session_.run("ctl find alpha");
    EXPECT_EQ(ending.status, 2);
    EXPECT_EQ(ending.out, "");
    EXPECT_THAT(ending.err, testing::HasSubstr("/quillon.json:3:1: "));
    const Ending given = session_.run("ctl find alpha --in " + home_);
    EXPECT_EQ(given.status, 2);
    EXPECT_EQ(given.out, home_ + "/alpha\n");
}

TEST_F(FindTest, ranksByTheOrderOfTheSettings)
{
    session_.disk().makeFolder("work/other/harbour");
    session_.disk().makeFolder("work/harbour/x");
    const std::string path =
        work_ + "/harbour\n" + work_ + "/harbour/x\n" + work_ + "/other/harbour\n";
    const std::string names =
        work_ + "/harbour\n" + work_ + "/other/harbour\n" + work_ + "/harbour/x\n";
    EXPECT_EQ(session_.run("ctl find --in . harbour").out, path);
    EXPECT_EQ(session_.run("ctl find --in . --order names harbour").out, names);
    session_.disk().writeFile("config/quillon/quillon.json", R"({"match-order": "names"})");
    EXPECT_EQ(session_.run("ctl find --in . harbour").out, names);
    EXPECT_EQ(session_.run("ctl find --in . --order path harbour").out, path);
    session_.disk().writeFile("config/quillon/quillon.json", R"({"match-order": "best"})");
    const Ending ending = session_.run("ctl find --in . harbour");
    EXPECT_EQ(ending.status, 2);
    EXPECT_THAT(ending.err, testing::HasSubstr("match-order"));
}

TEST_F(FindTest, leadsFromTheWorkingFolder)
{
    const std::string relative = "cd '[a,b]'; ctl find --relative --in .. ";
    EXPECT_EQ(session_.run(relative + "alpha | head -n 1").out, "alpha\n");
    EXPECT_EQ(session_.run(relative + "odd | tr -d '\\n'").out, "../odd \xff../odd \xff/alpha");
    EXPECT_THAT(session_.run(relative + "--json --top 1 odd").out,
                HasSubstr(R"("ranges":[[3,3]])"));
    EXPECT_EQ(session_.run("cd '[a,b]/alpha'; ctl find --relative --in .. ,b").out, "..\n.\n");
}

TEST_F(FindTest, addsWordsInAnyOrder)
{
    session_.disk().makeFolder("work/harbour plans");
    EXPECT_EQ(session_.run("ctl find --in . plans HARBOUR").out, work_ + "/harbour plans\n");
    EXPECT_EQ(session_.run("ctl find --in . --no-words plans harbour").status, 1);
}

TEST_F(FindTest, joinsSeveralWordsByBlanks)
{
    session_.disk().makeFolder("work/harbour plans/[x,y]");
    const std::string found = work_ + "/harbour plans\n";
    EXPECT_EQ(session_.run("ctl find harbour --in . --top 1 plans").out, found);
    EXPECT_EQ(session_.run("ctl find --in . --top 1 'harbour plans'").out, found);
    EXPECT_EQ(session_.run("ctl find --in . --no-words plans '[x,y]'").status, 1)
        << "no blank before the slash";
}

TEST_F(FindTest, goesOnWhereOneFolderIsMissing)
{
    const Ending ending = session_.run("ctl find --in nowhere --in '[a,b]' alpha");
    EXPECT_EQ(ending.status, 2);
    EXPECT_EQ(ending.out, work_ + "/[a,b]/alpha\n");
    EXPECT_THAT(ending.err, MatchesRegex("quillonctl: nowhere: [^\n]+\n"));
}

} // namespace

} // namespace quillon
