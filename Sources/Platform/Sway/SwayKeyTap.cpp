// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayKeyTap.h"

#include "Platform/Sway/SwayConnection.h"
#include "Platform/Sway/SwayKeyBinding.h"

bool SwayKeyTap::isUsable()
{
    return SwayConnection().isUsable();
}

std::unique_ptr<KeyTap::Tap> SwayKeyTap::createTap(const KeyCombination &combination,
                                                   Callback callback)
{
    auto binding = std::make_unique<SwayKeyBinding>(std::move(callback));
    if (!binding->setCombination(combination)) {
        return nullptr;
    }
    return binding;
}
