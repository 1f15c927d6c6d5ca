// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/ActivationToken.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Desktops make tokens of some 40 characters; this is far more than any of them needs.
constexpr qsizetype longestToken = 1000;

bool isTokenCharacter(QChar character)
{
    return character > u' ' && character <= u'~';
}
} // namespace

void useActivationToken(const QString &token)
{
    if (!token.isEmpty() && token.size() <= longestToken &&
        std::all_of(token.cbegin(), token.cend(), isTokenCharacter)) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toLatin1());
    }
}

void useActivationTokenOf(const QVariantMap &platformData)
{
    useActivationToken(platformData.value(u"activation-token"_s).toString());
}
