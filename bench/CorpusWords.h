#pragma once

#include <array>
#include <string_view>

/// The names of the corpus's folders.
namespace quillon::bench::words {

inline constexpr std::array<std::string_view, 64> NOUNS = {
    "harbour", "invoice",  "ledger",   "garden",  "engine",  "signal",    "parser",  "render",
    "cache",   "archive",  "beacon",   "canvas",  "kernel",  "lantern",   "meadow",  "network",
    "orchard", "packet",   "quarry",   "report",  "schema",  "travel",    "update",  "vector",
    "window",  "yield",    "budget",   "client",  "design",  "export",    "folder",  "graph",
    "history", "index",    "journal",  "keyring", "layout",  "matrix",    "notes",   "output",
    "plans",   "query",    "router",   "search",  "theme",   "upload",    "viewer",  "worker",
    "account", "bridge",   "compiler", "driver",  "editor",  "filter",    "gateway", "handler",
    "insight", "launcher", "monitor",  "planner", "runtime", "scheduler", "tracker", "validator"};
inline constexpr std::array<std::string_view, 32> ADJECTIVES = {
    "amber", "bright", "calm",  "daily", "early",  "fast",   "great",  "hidden",
    "inner", "joint",  "keen",  "local", "modern", "native", "open",   "plain",
    "quick", "remote", "small", "tiny",  "urban",  "vivid",  "wide",   "young",
    "blue",  "cross",  "deep",  "extra", "flat",   "green",  "hollow", "iron"};
inline constexpr std::array<std::string_view, 32> MODULES = {
    "src",    "include", "lib",     "docs",    "tests",   "utils",     "internal", "core",
    "common", "api",     "assets",  "images",  "scripts", "config",    "fixtures", "components",
    "models", "views",   "plugins", "locale",  "styles",  "templates", "examples", "services",
    "hooks",  "types",   "parsers", "shaders", "vendor",  "build",     "release",  "dist"};
inline constexpr std::array<std::string_view, 16> LANGUAGES = {
    "en", "de", "fr", "es", "pt_BR", "it", "ja", "ko",
    "nl", "pl", "ru", "sv", "zh_CN", "tr", "uk", "cs"};
inline constexpr std::array<std::string_view, 24> TOPICS = {
    "Taxes",    "Contracts", "Insurance", "Letters",  "Recipes", "Holiday", "Manuals",   "Research",
    "Teaching", "Meetings",  "Proposals", "Invoices", "House",   "Car",     "School",    "Health",
    "Music",    "Choir",     "Archive",   "Drafts",   "Scans",   "Club",    "Genealogy", "Garden"};
inline constexpr std::array<std::string_view, 24> PLACES = {
    "Harbour", "Lake",   "Mountain", "Beach",   "Birthday", "Wedding",   "Old Town", "Zoo",
    "Concert", "Island", "Forest",   "Castle",  "Market",   "Snow",      "Regatta",  "Museum",
    "Airport", "River",  "Camping",  "Bicycle", "Autumn",   "Fireworks", "Garden",   "Family"};

} // namespace quillon::bench::words
