#pragma once

#include "platform/RemoteSearch.h"

#include <functional>
#include <string>
#include <vector>

namespace quillon {

/// Receives the requests and searches of other processes when this is the running instance. Main
/// thread only.
class RemoteControl
{
public:
    enum class Claim
    {
        /// This process now answers requests under the application's name.
        owner,
        /// Another process answers them.
        taken,
        /// There is no bus; the program runs without being reachable.
        unavailable,
    };

    struct Request
    {
        /// "activate" (the program was started a second time), "toggle", "show", "preferences",
        /// "rebuild" or "quit". With a path: "open", or the id of a row action.
        std::string action;
        /// The caller's right to the keyboard. It is empty when there is none.
        std::string activationToken;
        /// The absolute path of the item that the action is for. It is empty when there is none.
        std::string path = {};
        /// The text that "show" types into the panel. Without one, the panel keeps its text.
        std::string text = {};
    };

    /// An item as the desktop's own search shows it. Its path is bytes, the other texts are UTF-8.
    struct Row
    {
        std::string path;
        std::string name;
        /// The path of the folder that the item is in, with "~" for the home folder.
        std::string place;
        /// True when the words that were searched for are the item's own name.
        bool isNamed = false;
    };

    /// Something else that the desktop's own search offers to do with a row.
    struct RowAction
    {
        /// The action of the request.
        std::string id;
        std::string words;
        /// The name of an icon of the icon theme.
        std::string icon;
    };

    struct Handlers
    {
        /// Runs on the main thread after the request has been answered.
        std::function<void(const Request &request)> perform;
        /// Runs on background threads, several at a time. An absent answer means that the caller
        /// has to search on its own.
        std::function<RemoteAnswer(const RemoteQuery &query)> find;
        /// Returns the state of the program as a JSON object. Runs on background threads.
        std::function<std::string()> status;
        /// Counts one opening of the path. Returns false when this instance has other settings than
        /// those at the first path. Runs on background threads.
        std::function<bool(const std::string &settings, const std::string &path)> use = nullptr;
        /// Opens the path as plain Return in the panel does, for the same settings. Runs on the
        /// main thread and hands over once, on any thread, why the path could not be opened, in
        /// English, or an empty text.
        std::function<void(const std::string &settings, const std::string &path,
                           std::function<void(const std::string &fault)> receive)>
            open = nullptr;
        /// Finds what the panel finds for the text, the best row first. Runs on the main thread and
        /// hands the rows over once, on any thread. It may wait for the index first.
        std::function<void(const std::string &text,
                           std::function<void(const std::vector<Row> &rows)> receive)>
            search = nullptr;
        /// Describes the item at an absolute path without asking the disk. Runs on background
        /// threads.
        std::function<Row(const std::string &path)> describe = nullptr;
        std::vector<RowAction> rowActions = {};
        /// The bus has ended, and no process will be reached by it any more. Runs on the main
        /// thread.
        std::function<void()> lost = nullptr;
    };

    RemoteControl() = default;
    virtual ~RemoteControl() = default;
    RemoteControl(const RemoteControl &) = delete;
    RemoteControl &operator=(const RemoteControl &) = delete;

    virtual Claim claim(Handlers handlers) = 0;
};

} // namespace quillon
