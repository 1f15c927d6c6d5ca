// SPDX-License-Identifier: MIT
#include "TextReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

using namespace Qt::StringLiterals;

QString FileReading::text() const
{
    QStringList texts;
    for (const RecognizedTextObservation &line : lines) {
        for (const RecognizedText &best : line.topCandidates(1)) {
            texts.append(best.string);
        }
    }
    return texts.join(u'\n');
}

QByteArray jsonLine(const FileReading &reading)
{
    QJsonArray lines;
    for (const RecognizedTextObservation &line : reading.lines) {
        const QRectF &box = line.boundingBox;
        for (const RecognizedText &best : line.topCandidates(1)) {
            lines.append(
                QJsonObject{{u"text"_s, best.string},
                            {u"box"_s, QJsonArray{box.x(), box.y(), box.width(), box.height()}},
                            {u"confidence"_s, best.confidence}});
        }
    }
    QJsonObject object{{u"image"_s, reading.file},
                       {u"text"_s, reading.text()},
                       {u"lines"_s, lines},
                       {u"ms"_s, reading.milliseconds},
                       {u"cpu"_s, reading.processorMilliseconds},
                       {u"warm"_s, reading.isWarm}};
    if (!reading.error.isEmpty()) {
        object[u"error"_s] = reading.error;
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
