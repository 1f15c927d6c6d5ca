// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandKeyTap.h"

#include "Platform/Wayland/ShortcutsInhibitor.h"
#include "Platform/Wayland/WaylandKeyboard.h"

std::optional<KeyCombination> WaylandKeyTap::combination(const QKeyEvent &event) const
{
    return WaylandKeyboard().combination(event);
}

QString WaylandKeyTap::keyLabel(quint16 keyCode) const
{
    return WaylandKeyboard().label(keyCode);
}

std::unique_ptr<KeyTap::Inhibitor> WaylandKeyTap::inhibitShortcuts(QWindow &window)
{
    return inhibitWaylandShortcuts(window);
}
