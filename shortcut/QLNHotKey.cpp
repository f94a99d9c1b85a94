#include "shortcut/QLNHotKey.h"

#include <utility>

namespace quillon {

QLNHotKey::QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
                     HotKey::Told told)
    : service_(service)
{
    service_.onPressed(std::move(pressed));
    service_.grab(keys, std::move(told));
}

QLNHotKey::~QLNHotKey()
{
    service_.release();
    service_.onPressed(nullptr);
}

} // namespace quillon
