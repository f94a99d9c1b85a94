#include "platform/linux/bus/ActivationToken.h"

#include <glib.h>

#include <array>

namespace quillon {

namespace {

constexpr std::array VARIABLES{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

} // namespace

std::string activationToken()
{
    for (const char *variable : VARIABLES) {
        const char *text = g_getenv(variable);
        if (text && *text != '\0' && g_utf8_validate(text, -1, nullptr))
            return text;
    }
    return {};
}

std::string takeActivationToken()
{
    std::string token = activationToken();
    for (const char *variable : VARIABLES)
        g_unsetenv(variable);
    return token;
}

} // namespace quillon
