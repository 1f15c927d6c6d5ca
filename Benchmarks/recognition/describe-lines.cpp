// SPDX-License-Identifier: MIT
//
// describe-lines IMAGE…: finds the lines of every image and prints the features that tell their
// kind of writing, one line of JSON per line: {"image": the path as given, "features": […],
// "shares": what is told by them}.

#include "TextRecognition/LineImage.h"
#include "TextRecognition/ScriptShape.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace recognition;

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
            const ShapeFeatures found = shapeFeatures(prepared.picture, preparedLetterHeight);
            QJsonArray features;
            for (const double feature : found) {
                features.append(feature);
            }
            QJsonArray shares;
            for (const double share : kindShares(found)) {
                shares.append(share);
            }
            const QJsonObject description{
                {u"image"_s, path}, {u"features"_s, features}, {u"shares"_s, shares}};
            std::puts(QJsonDocument(description).toJson(QJsonDocument::Compact).constData());
        }
    }
    return 0;
}
