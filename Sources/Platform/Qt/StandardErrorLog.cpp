// SPDX-License-Identifier: MIT
#include "Platform/Qt/StandardErrorLog.h"

#include <cstdio>

void StandardErrorLog::write(const QString &line)
{
    QString text = line;
    for (QChar &character : text) {
        // A message of several lines would be several messages, and could be taken for another's.
        if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    // One call, so that lines of several threads do not mix.
    const QByteArray bytes = "vellora: " + text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}
