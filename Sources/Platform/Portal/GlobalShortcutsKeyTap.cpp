// SPDX-License-Identifier: MIT
#include "Platform/Portal/GlobalShortcutsKeyTap.h"

#include "Platform/Portal/GlobalShortcutsKey.h"
#include "Platform/Portal/PortalApplication.h"

using namespace Qt::StringLiterals;

GlobalShortcutsKeyTap::GlobalShortcutsKeyTap(SystemLog &log)
    : m_log(log)
{
}

bool GlobalShortcutsKeyTap::isOffered()
{
    return portalVersion(u"GlobalShortcuts"_s) > 0;
}

std::unique_ptr<KeyTap::Tap> GlobalShortcutsKeyTap::createTap(const KeyCombination &combination,
                                                              Callback callback)
{
    auto key = std::make_unique<GlobalShortcutsKey>(std::move(callback), m_givenKeys, m_log);
    if (!key->setCombination(combination)) {
        return nullptr;
    }
    return key;
}
