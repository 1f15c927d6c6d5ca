// SPDX-License-Identifier: MIT
#pragma once

#include "EnginePool.h"
#include "LineImage.h"
#include "Lines.h"
#include "Reading.h"
#include "Script.h"

#include <QHash>

namespace recognition {

/// One line on its way from the picture to its text. Used by one thread at a time.
class LineTask
{
public:
    LineTask(const GreyImage &page, TextLine line);

    const TextLine &line() const { return m_line; }
    const LineImage &image() const { return m_image; }
    /// About how many letters fit.
    double length() const { return double(m_line.box.width()) / std::max(1, m_line.letterHeight); }

    /// The whole line as `model` reads it; read once, then remembered.
    const Reading &read(EnginePool &pool, const QString &model);
    /// The same of a part about `letters` letter heights long, cut in a gap between words: from
    /// the right if `fromRight`. A line hardly longer is read as a whole.
    Reading sample(EnginePool &pool, const QString &model, int letters, bool fromRight);

    /// What the line is taken to say.
    Reading best;
    Script script = Script::Latin;
    /// Other readings of the whole line, for those who want to choose.
    QList<Reading> others() const { return m_readings.values(); }

private:
    TextLine m_line;
    LineImage m_image;
    QHash<QString, Reading> m_readings;
};

} // namespace recognition
