#include "shortcut/QLNHotKey.h"

#include <utility>

namespace quillon {

QLNHotKey::QLNHotKey(HotKey &service, const KeyCombination &keys, std::function<void()> pressed,
                     HotKey::Receiver receiver)
    : service_(service)
{
    service_.onPressed(std::move(pressed));
    service_.grab(keys, std::move(receiver));
}

QLNHotKey::~QLNHotKey()
{
    service_.release();
    service_.onPressed(nullptr);
}

} // namespace quillon
