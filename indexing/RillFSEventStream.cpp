#include "indexing/RillFSEventStream.h"

#include "base/Require.h"

#include <utility>

namespace quillon {

RillFSEventStream::Made RillFSEventStream::make(FSEventStreamService &service, Terms terms)
{
    std::unique_ptr<RillFSEventStream> stream(new RillFSEventStream(std::move(terms.handler)));
    stream->rawref_ =
        service.create({.callback = receive,
                        .info = stream.get(),
                        .paths = std::move(terms.pathsToWatch),
                        .sinceWhen = terms.sinceWhen.rawValue,
                        .latency = terms.latency,
                        .flags = terms.flags.rawValue | RillFSEventsCreateFlags::USE_CF_TYPES,
                        .items = std::move(terms.items),
                        .recorded = std::move(terms.recorded)});
    if (!stream->rawref_)
        return RillFSEventsError{.code = RillFSEventsErrorCode::cannotCreateStream, .message = {}};
    return stream;
}

std::optional<RillFSEventsError> RillFSEventStream::start()
{
    if (rawref_->start())
        return std::nullopt;
    return RillFSEventsError{.code = RillFSEventsErrorCode::cannotStartStream, .message = {}};
}

void RillFSEventStream::receive(void *info, std::size_t count, const FSEventPaths &paths,
                                const std::vector<std::uint32_t> &flags,
                                const std::vector<std::uint64_t> &ids)
{
    using enum RillFSEventsCriticalErrorCode;
    const auto report = [](RillFSEventsCriticalErrorCode code, std::string message) {
        RillFSEventsIllogicalErrorLog{code, std::move(message)}.report();
    };
    if (info == nullptr)
        return report(missingContextRawPointerValue, "");
    if (const auto *printout = std::get_if<std::string>(&paths))
        return report(unexpectedPathValueType, "Cannot convert `" + *printout + "` into [String].");
    const auto &list = std::get<std::vector<std::string>>(paths);
    if (list.size() != count)
        return report(unmatchedEventParameterCounts, "Event count is `" + std::to_string(count) +
                                                         "`, but path count is `" +
                                                         std::to_string(list.size()) + "`");
    require(flags.size() == count && ids.size() == count, "every event has flags and an ID");
    const auto *stream = static_cast<const RillFSEventStream *>(info);
    for (std::size_t i = 0; i < count; ++i)
        stream->handler_({.path = list[i],
                          .flag = RillFSEventsEventFlags{flags[i]},
                          .ID = RillFSEventsEventID{ids[i]}});
}

} // namespace quillon
