#include "app/update/BuildSettings.h"

namespace quillon {

BuildSettings BuildSettings::ofThisBuild()
{
    return {.version = QUILLON_VERSION,
            .updateFeed = QUILLON_UPDATE_FEED,
            .updateKey = QUILLON_UPDATE_KEY,
            .feedbackAddress = QUILLON_FEEDBACK_URL};
}

} // namespace quillon
