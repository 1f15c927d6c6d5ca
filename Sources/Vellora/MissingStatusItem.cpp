// SPDX-License-Identifier: MIT
#include "MissingStatusItem.h"

#include "Platform/Platform.h"
#include "Publisher.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
const QString dismissedKey = u"missingStatusItemDismissed"_s;

QString translated(const char *text)
{
    return QCoreApplication::translate("MissingStatusItem", text);
}
} // namespace

bool MissingStatusItem::isMissing()
{
    return Platform::current().statusBar->exposure().extent() ==
           StatusItemExposure::Extent::Nothing;
}

QString MissingStatusItem::message()
{
    QString text = translated(QT_TRANSLATE_NOOP(
        "MissingStatusItem", "This desktop shows no status item of %1. Start %1 again to capture, "
                             "or turn on the shortcut below. “Settings…” in the launcher’s menu "
                             "opens this window."));
    text.replace(u"%1"_s, Publisher::applicationName);
    const QString extension = Platform::current().statusBar->exposure().missingExtension();
    if (!extension.isEmpty()) {
        text += u"\n\n"_s + translated(QT_TRANSLATE_NOOP("MissingStatusItem",
                                                         "The GNOME extension “%1” shows it."))
                                .arg(extension);
    }
    return text;
}

bool MissingStatusItem::wasDismissed()
{
    return Platform::current().userDefaults->boolean(dismissedKey);
}

void MissingStatusItem::dismiss()
{
    Platform::current().userDefaults->set(dismissedKey, true);
}
