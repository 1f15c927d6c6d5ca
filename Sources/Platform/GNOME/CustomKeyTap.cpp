// SPDX-License-Identifier: MIT
#include "Platform/GNOME/CustomKeyTap.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/GNOME/CustomKey.h"

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
