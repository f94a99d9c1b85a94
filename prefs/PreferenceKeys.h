#pragma once

#include <string_view>

namespace quillon {

/// Every key that the program keeps among the user's settings. "Absent" gives the value that holds
/// until the user changes it.
struct PreferenceKeys
{
    /// String, an item key: what choosing a quick-search row does. Absent: "open".
    static constexpr std::string_view QUICK_SEARCH_BEHAVIOR = "quick-search-behavior";
    /// Boolean: quick search is on. Absent: false.
    static constexpr std::string_view FINDER_QUICK_SEARCH = "finder-quick-search";
    /// String, an item key: whether a folder opens in a new or in the existing window. Absent:
    /// "new".
    static constexpr std::string_view OPEN_FINDER_BEHAVIOR = "open-finder-behavior";
    /// String, an item key: by which rule the rows of an answer are ranked. Absent: "path".
    static constexpr std::string_view MATCH_ORDER = "match-order";
    /// Boolean: an answer has no further rows with the words in any order. Absent: false.
    static constexpr std::string_view MATCH_WORDS_IN_ORDER = "match-words-in-order";
    /// Boolean: the desktop's own search gets no rows from this program. Absent: false.
    static constexpr std::string_view HIDE_FROM_DESKTOP_SEARCH = "hide-from-desktop-search";
    /// Boolean: what is opened is not entered in the desktop's list of recent files. Absent: false.
    static constexpr std::string_view HIDE_FROM_RECENT_FILES = "hide-from-recent-files";
    /// Boolean: update checks include beta versions. Absent: false.
    static constexpr std::string_view ENABLE_BETA_UPDATES = "enable-beta-updates";
    /// List of strings: the user's exclude patterns. Absent: the built-in suggestions.
    static constexpr std::string_view EXCLUDE_FOLDER_PATTERNS = "exclude-folder-patterns";
    /// List of strings: extensions of the files to index. Absent: the built-in suggestions.
    static constexpr std::string_view INCLUDE_FILE_PATTERNS = "include-file-patterns";
    /// Dictionary, folder path to bookmark data: the folders to index. Absent: none.
    static constexpr std::string_view BOOKMARKS = "qln-bookmarks";
    /// Dictionary, a key of the bookmarks to boolean: whether hidden folders below the folder are
    /// indexed too. Absent: false.
    static constexpr std::string_view SEARCH_HIDDEN_FOLDERS = "search-hidden-folders";
    /// Data: the user's actions. Absent: the built-in ones.
    static constexpr std::string_view ACTIONS_LIST = "qln-actions-list";
    /// Dictionary, path to whole number: use counts. Absent: no history.
    static constexpr std::string_view RECENT_ACCESS_SCORE_DATA = "recent-access-score-data";
    /// List of strings, absolute paths: what stands above the most used rows, in this order.
    /// Absent: nothing.
    static constexpr std::string_view KEPT_ON_TOP = "kept-on-top";
    /// Boolean: access to the file manager was granted ahead of first use. Absent: false.
    static constexpr std::string_view PREEMPTIVE_APPLE_EVENT_ACCESS =
        "preemptive-apple-event-access";
    /// Boolean, set by hand: the index's log is echoed to standard output. Absent: false.
    static constexpr std::string_view DEBUG_LOG_FS_EVENTS = "debug-log-fs-events";
    /// The global shortcut, as its control writes it or as "Ctrl+Alt+Space". Absent: none.
    static constexpr std::string_view SHORTCUT = "ShowQLNShortcut";
    /// String: desktop id of the file manager to use. Absent: the desktop's default handler.
    static constexpr std::string_view FILE_MANAGER = "file-manager";
};

} // namespace quillon
