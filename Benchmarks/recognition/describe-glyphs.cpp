// SPDX-License-Identifier: MIT
//
// describe-glyphs IMAGE…: finds the lines of every image and prints their glyphs, one line of JSON
// per line of text: {"image": the path as given, "middle": its row, "glyphs": [{"box": [left, top,
// right, bottom], "features": […], "shares": what is told by them}…]}.

#include "TextRecognition/DigitShape.h"
#include "TextRecognition/LineImage.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cmath>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

template <typename Numbers>
QJsonArray arrayOf(const Numbers &numbers)
{
    QJsonArray array;
    for (const auto number : numbers) {
        array.append(std::round(1000 * double(number)) / 1000);
    }
    return array;
}

QJsonObject description(const PlainGlyph &glyph)
{
    const Box &box = glyph.box;
    return {{u"box"_s, QJsonArray{box.left, box.top, box.right, box.bottom}},
            {u"features"_s, arrayOf(glyph.features)},
            {u"shares"_s, arrayOf(digitShares(glyph.features))}};
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        const GreyImage page = greyImage(QImage(path));
        for (const TextLine &line : findLines(findMarks(page))) {
            const LineImage prepared = lineImage(page, line);
            if (prepared.isEmpty()) {
                continue;
            }
            QJsonArray glyphs;
            for (const PlainGlyph &glyph : plainGlyphs(prepared.picture, preparedLetterHeight)) {
                glyphs.append(description(glyph));
            }
            const QJsonObject found{
                {u"image"_s, path}, {u"middle"_s, line.box.centreY2() / 2}, {u"glyphs"_s, glyphs}};
            std::puts(QJsonDocument(found).toJson(QJsonDocument::Compact).constData());
        }
    }
    return 0;
}
