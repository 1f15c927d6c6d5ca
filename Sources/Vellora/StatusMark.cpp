// SPDX-License-Identifier: MIT
#include "StatusMark.h"

#include "Platform/Platform.h"
#include "Platform/SystemSymbol.h"
#include "Publisher.h"

#include <QCoreApplication>

QString defaultToolTip()
{
    return QCoreApplication::translate("AppDelegate",
                                       "Left-click to capture text · Right-click for menu");
}

namespace {
/// One message at a time, like the marks.
const QString notificationId = QStringLiteral("mark");

/// Says what the panel does not show of the mark. A click on it does nothing: without an action of
/// ours some desktops would start the program, and with that a capture.
void postWhatIsNotSeen(const StatusMark &mark)
{
    using Extent = StatusItemExposure::Extent;
    const Extent extent = Platform::current().statusBar->exposure().extent();
    if (extent == Extent::ImageAndToolTip || (extent == Extent::Image && !mark.toolTip)) {
        return;
    }
    Platform::current().notifications->post(
        notificationId, {Publisher::applicationName,
                         mark.toolTip.value_or(mark.accessibilityDescription), true, [] {
                         }});
}
} // namespace

void show(const StatusMark &mark, const std::shared_ptr<StatusItemButton> &button)
{
    const StatusItemImage remembered = button->image();
    button->setImage(systemSymbol(mark.symbolName, mark.accessibilityDescription));
    if (!mark.logLine.isEmpty()) {
        Platform::current().systemLog->log(mark.logLine);
    }
    if (mark.toolTip) {
        button->setToolTip(*mark.toolTip);
    }
    postWhatIsNotSeen(mark);
    Platform::current().mainQueue->asyncAfter(
        mark.duration, [button, remembered, resetsToolTip = mark.toolTip.has_value()] {
            button->setImage(remembered);
            if (resetsToolTip) {
                button->setToolTip(defaultToolTip());
            }
        });
}
