// SPDX-License-Identifier: MIT
#include "StatusMark.h"

#include "Platform/Platform.h"
#include "Platform/SystemSymbol.h"

#include <QCoreApplication>

QString defaultToolTip()
{
    return QCoreApplication::translate("AppDelegate",
                                       "Left-click to capture text · Right-click for menu");
}

void show(const StatusMark &mark, const std::shared_ptr<StatusItemButton> &button)
{
    const StatusItemImage remembered = button->image();
    button->setImage(systemSymbol(mark.symbolName, mark.accessibilityDescription));
    if (mark.toolTip) {
        button->setToolTip(*mark.toolTip);
    }
    Platform::current().mainQueue->asyncAfter(
        mark.duration, [button, remembered, resetsToolTip = mark.toolTip.has_value()] {
            button->setImage(remembered);
            if (resetsToolTip) {
                button->setToolTip(defaultToolTip());
            }
        });
}
