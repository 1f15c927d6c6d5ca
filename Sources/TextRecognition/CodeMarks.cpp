// SPDX-License-Identifier: MIT
#include "CodeMarks.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace recognition {

bool isMarkOfCode(const QString &text)
{
    static const QStringList marks{u"//"_s, u"/*"_s, u"*/"_s, u"->"_s, u"=>"_s, u"&&"_s};
    return marks.contains(text);
}

} // namespace recognition
