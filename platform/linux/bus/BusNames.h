#pragma once

namespace quillon {

/// Both ends of the session bus read here how the running instance is reached.
struct BusNames
{
    static constexpr const char *SERVICE = "org.quillon.Quillon";
    static constexpr const char *OBJECT = "/org/quillon/Quillon";

    /// The desktop's own interface has Activate, Open and ActivateAction.
    static constexpr const char *APPLICATION = "org.freedesktop.Application";
    /// The platform data of a request carries these two texts.
    static constexpr const char *ACTIVATION_TOKEN = "activation-token";
    static constexpr const char *STARTUP_ID = "desktop-startup-id";

    /// Find(ay settings, ay query, u limit, s order, b words) -> a(ayda(xx)): path, score, ranges
    /// to mark.
    static constexpr const char *SEARCH = "org.quillon.Quillon.Search";
    static constexpr const char *FIND = "Find";
    /// Status() -> s: the state of the instance, as a JSON object.
    static constexpr const char *STATUS = "Status";
    /// Use(ay settings, ay path) -> b: counts one opening of the path; false for other settings.
    static constexpr const char *USE = "Use";
    /// Open(ay settings, ay path) -> s: opens the path as plain Return does, and says in English
    /// why it could not, or nothing.
    static constexpr const char *OPEN = "Open";
    /// A search that the instance leaves to the caller fails with this error.
    static constexpr const char *NOT_ANSWERED = "org.quillon.Quillon.Error.NotAnswered";
};

} // namespace quillon
