// SPDX-License-Identifier: MIT
#include "Platform/SystemSymbol.h"

#include <QFile>

using namespace Qt::StringLiterals;

StatusItemImage systemSymbol(const QString &name, const QString &accessibilityDescription)
{
    QFile file(u":/symbols/%1.svg"_s.arg(name));
    QByteArray data;
    if (file.open(QIODevice::ReadOnly)) {
        data = file.readAll();
    }
    return {name, data, accessibilityDescription};
}
