// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayKeyTap.h"

#include "Platform/Sway/SwayConnection.h"
#include "Platform/Sway/SwayKeyBinding.h"
#include "Platform/Wayland/WaylandKeyboard.h"

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

std::optional<KeyCombination> SwayKeyTap::combination(const QKeyEvent &event) const
{
    return WaylandKeyboard().combination(event);
}

QString SwayKeyTap::keyLabel(quint16 keyCode) const
{
    return WaylandKeyboard().label(keyCode);
}
