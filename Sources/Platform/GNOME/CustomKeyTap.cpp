// SPDX-License-Identifier: MIT
#include "Platform/GNOME/CustomKeyTap.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/GNOME/CustomKey.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QDBusConnectionInterface>

using namespace Qt::StringLiterals;

bool CustomKeyTap::isUsable()
{
    const auto bus = sessionBus();
    return bus && CustomKey::isOffered() &&
           bus->interface()->isServiceRegistered(u"org.gnome.Shell"_s);
}

std::unique_ptr<KeyTap::Tap> CustomKeyTap::createTap(const KeyCombination &combination,
                                                     Callback /*callback*/)
{
    auto key = std::make_unique<CustomKey>();
    if (!key->setCombination(combination)) {
        return nullptr;
    }
    return key;
}

std::optional<KeyCombination> CustomKeyTap::combination(const QKeyEvent &event) const
{
    return WaylandKeyboard().combination(event);
}

QString CustomKeyTap::keyLabel(quint16 keyCode) const
{
    return WaylandKeyboard().label(keyCode);
}
