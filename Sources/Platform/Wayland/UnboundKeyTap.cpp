// SPDX-License-Identifier: MIT
#include "Platform/Wayland/UnboundKeyTap.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

UnboundKeyTap::UnboundKeyTap(SystemLog &log)
    : m_log(log)
{
}

std::unique_ptr<KeyTap::Tap> UnboundKeyTap::createTap(const KeyCombination & /*combination*/,
                                                      Callback /*callback*/)
{
    m_log.log(u"This desktop lets programs bind no keys. Bind one yourself, in its settings, to: "
              u"gapplication action %1 capture"_s.arg(QGuiApplication::desktopFileName()));
    return nullptr;
}
