#include "platform/linux/bus/ActivationToken.h"

#include <glib.h>

#include <utility>

namespace quillon {

std::string activationToken()
{
    for (const char *variable : ACTIVATION_VARIABLES) {
        const char *text = g_getenv(variable);
        if (text && *text != '\0' && g_utf8_validate(text, -1, nullptr))
            return text;
    }
    return {};
}

std::string takeActivationToken()
{
    std::string token = activationToken();
    for (const char *variable : ACTIVATION_VARIABLES)
        g_unsetenv(variable);
    return token;
}

void LaunchToken::set(std::string token)
{
    const MutexLock lock(mutex_);
    text_ = std::move(token);
}

std::string LaunchToken::text() const
{
    const MutexLock lock(mutex_);
    return text_;
}

} // namespace quillon
