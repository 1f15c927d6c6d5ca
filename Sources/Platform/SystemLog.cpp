// SPDX-License-Identifier: MIT
#include "Platform/SystemLog.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

QString SystemLog::expanded(const QString &format)
{
    // Flags, width, precision, length and conversion, as printf(3) lists them; "@" for objects.
    static const QRegularExpression directive(
        uR"(%(%|[-+ #0']*\d*(?:\.\d*)?(?:hh|ll|[hlLqjzt])?[diouxXeEfFgGaAcCsSpn@]))"_s);
    QString line;
    qsizetype end = 0;
    for (auto matches = directive.globalMatch(format); matches.hasNext();) {
        const auto match = matches.next();
        line += QStringView(format).mid(end, match.capturedStart() - end);
        if (match.capturedView(1) == u"%") {
            line += u'%';
        }
        end = match.capturedEnd();
    }
    line += QStringView(format).mid(end);
    return line;
}
