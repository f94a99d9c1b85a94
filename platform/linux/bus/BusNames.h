#pragma once

namespace quillon {

/// How the running instance is reached on the session bus; both ends read it here.
struct BusNames
{
    static constexpr const char *SERVICE = "org.quillon.Quillon";
    static constexpr const char *OBJECT = "/org/quillon/Quillon";

    /// The desktop's own: Activate, Open and ActivateAction.
    static constexpr const char *APPLICATION = "org.freedesktop.Application";
    /// What the platform data of a request carries, texts both.
    static constexpr const char *ACTIVATION_TOKEN = "activation-token";
    static constexpr const char *STARTUP_ID = "desktop-startup-id";

    /// Find(ay settings, ay query, u limit) -> a(ayda(xx)): path, score, ranges to mark.
    static constexpr const char *SEARCH = "org.quillon.Quillon.Search";
    static constexpr const char *FIND = "Find";
    /// The error of a search that the instance leaves to others.
    static constexpr const char *NOT_ANSWERED = "org.quillon.Quillon.Error.NotAnswered";
};

} // namespace quillon
