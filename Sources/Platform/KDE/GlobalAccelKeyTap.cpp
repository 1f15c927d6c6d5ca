// SPDX-License-Identifier: MIT
#include "Platform/KDE/GlobalAccelKeyTap.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/KDE/GlobalAccelKey.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

using namespace Qt::StringLiterals;

bool GlobalAccelKeyTap::isUsable()
{
    const auto bus = sessionBus();
    if (!bus) {
        return false;
    }
    const QDBusReply<QString> owner = bus->interface()->serviceOwner(u"org.kde.kglobalaccel"_s);
    const QDBusReply<QString> compositor = bus->interface()->serviceOwner(u"org.kde.KWin"_s);
    return owner.isValid() && compositor.isValid() && owner.value() == compositor.value();
}

std::unique_ptr<KeyTap::Tap> GlobalAccelKeyTap::createTap(const KeyCombination &combination,
                                                          Callback callback)
{
    auto key = std::make_unique<GlobalAccelKey>(std::move(callback));
    if (!key->setCombination(combination)) {
        return nullptr;
    }
    return key;
}
