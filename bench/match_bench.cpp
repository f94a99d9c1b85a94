// Measures the matcher over the corpus: every needle in both orders (match/... by the whole path,
// names/... with names first) on one and on two threads, words in any order (words/..., both
// orders), laying the tree out anew, insertion of the sorted list, and memory by number of folders.
//
// match_bench [--benchmark_...] [COUNT]: COUNT folders (1,000,000) for the needles and insertion.
// A needle stands in its measurement's name with % and two digits for every byte that is no letter
// or digit, so that any bytes survive.

#include "bench/Corpus.h"
#include "bench/Needles.h"
#include "matching/FuzzyMatch.h"
#include "matching/FuzzyScore.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <malloc.h>

namespace quillon::bench {

namespace {

constexpr std::size_t ROWS = 25;

/// The corpus and views of it, since the index takes a list of views.
struct List
{
    explicit List(std::size_t count) : paths(makeCorpus(count)), views(paths.begin(), paths.end())
    {}
    std::vector<std::string> paths;
    std::vector<std::string_view> views;
};

std::string escaped(std::string_view query)
{
    std::string text;
    for (const char character : query) {
        const auto byte = static_cast<unsigned char>(character);
        std::array<char, 4> code{};
        std::snprintf(code.data(), code.size(), "%%%02X", byte);
        text += byte < 0x80 && std::isalnum(byte) != 0 ? std::string(1, character) : code.data();
    }
    return text;
}

void measureNeedle(benchmark::State &state, FuzzyMatch &matcher, const Needle &needle,
                   MatchOrder order, std::size_t candidates)
{
    matcher.setSearchThreads(static_cast<unsigned>(state.range(0)));
    for ([[maybe_unused]] const auto step : state)
        benchmark::DoNotOptimize(matcher.match(needle.query, ROWS, order));
    state.SetLabel(std::string(needle.kind));
    state.counters["candidates"] = static_cast<double>(candidates);
}

/// Measures what words in any order take behind an answer without a row.
void measureWords(benchmark::State &state, FuzzyMatch &matcher, const Needle &needle,
                  MatchOrder order)
{
    matcher.setSearchThreads(2);
    for ([[maybe_unused]] const auto step : state) {
        std::vector<FuzzyMatchResult> results;
        matcher.addWordMatches(needle.query, ROWS, order, results);
        benchmark::DoNotOptimize(results);
    }
    state.SetLabel(std::string(needle.query));
}

void measureInsertion(benchmark::State &state, const List &list)
{
    for ([[maybe_unused]] const auto step : state) {
        state.PauseTiming();
        auto matcher = std::make_unique<FuzzyMatch>();
        state.ResumeTiming();
        matcher->add(list.views);
        state.PauseTiming();
        matcher.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(list.views.size()));
}

/// Measures how long arranging the tree takes, without the insertion before.
void measureArrangement(benchmark::State &state, const List &list)
{
    for ([[maybe_unused]] const auto step : state) {
        state.PauseTiming();
        auto matcher = std::make_unique<FuzzyMatch>();
        matcher->add(list.views);
        state.ResumeTiming();
        matcher->arrange();
        state.PauseTiming();
        matcher.reset();
        state.ResumeTiming();
    }
}

double heapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

/// Measures the memory that the index reports and by how much the heap has grown.
void measureMemory(benchmark::State &state)
{
    const List list(static_cast<std::size_t>(state.range(0)));
    const auto folders = static_cast<double>(list.views.size());
    for ([[maybe_unused]] const auto step : state) {
        const double before = heapBytes();
        FuzzyMatch matcher;
        matcher.add(list.views);
        matcher.arrange();
        state.counters["bytesPerFolder"] = static_cast<double>(matcher.bytes()) / folders;
        state.counters["heapBytesPerFolder"] = (heapBytes() - before) / folders;
    }
}

void measureNeedles(FuzzyMatch &matcher, const List &list)
{
    for (const Needle &needle : needles()) {
        const auto candidates = static_cast<std::size_t>(std::ranges::count_if(
            list.views, [&](std::string_view path) { return isSubsequence(needle.query, path); }));
        for (const auto &[order, name] :
             {std::pair(MatchOrder::path, "match/"), std::pair(MatchOrder::names, "names/")}) {
            benchmark::RegisterBenchmark(
                (name + escaped(needle.query)).c_str(),
                [&matcher, &needle, order = order, candidates](benchmark::State &state) {
                    measureNeedle(state, matcher, needle, order, candidates);
                })
                ->ArgName("threads")
                ->Arg(1)
                ->Arg(2)
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
}

void measureWordNeedles(FuzzyMatch &matcher)
{
    for (const Needle &needle : wordNeedles())
        for (const auto &[order, name] :
             {std::pair(MatchOrder::path, "path/"), std::pair(MatchOrder::names, "names/")})
            benchmark::RegisterBenchmark(
                ("words/" + std::string(name) + escaped(needle.query)).c_str(),
                [&matcher, &needle, order = order](benchmark::State &state) {
                    measureWords(state, matcher, needle, order);
                })
                ->UseRealTime()
                ->Unit(benchmark::kMillisecond);
}

int run(std::size_t count)
{
    const List list(count);
    FuzzyMatch matcher;
    matcher.add(list.views);
    matcher.arrange();
    measureNeedles(matcher, list);
    measureWordNeedles(matcher);
    benchmark::RegisterBenchmark(
        "insertion", [&list](benchmark::State &state) { measureInsertion(state, list); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        "arrangement", [&list](benchmark::State &state) { measureArrangement(state, list); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("memory", measureMemory)
        ->ArgName("folders")
        ->Arg(10'000)
        ->Arg(100'000)
        ->Arg(1'000'000)
        ->Arg(1'100'000)
        ->Arg(3'000'000)
        ->Iterations(1)
        ->Repetitions(1)
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace

} // namespace quillon::bench

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    std::size_t count = 1'000'000;
    const std::string_view argument = argc == 2 ? argv[1] : "";
    const char *end = argument.data() + argument.size();
    if (argc > 2 || (argc == 2 && std::from_chars(argument.data(), end, count).ptr != end)) {
        std::fputs("usage: match_bench [--benchmark_...] [COUNT]\n", stderr);
        return 2;
    }
    return quillon::bench::run(count);
}
