// SPDX-License-Identifier: MIT
//
// read-lines FOLDER MODEL IMAGE…: reads pictures of prepared lines, dark on white, with a model of
// a folder and prints one line of JSON for each: {"image": the path as given, "text": …,
// "confidence": in percent}. Fails if the engine cannot read the model.

#include "TextRecognition/Network/Engine.h"

#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace recognition;

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fputs("usage: read-lines FOLDER MODEL IMAGE...\n", stderr);
        return 2;
    }
    const auto engine = Engine::load(ModelFolder(QString::fromLocal8Bit(argv[1])),
                                     QString::fromLocal8Bit(argv[2]), Dictionary::Without);
    if (!engine) {
        std::fputs("read-lines: no such model, or a damaged one\n", stderr);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        const Reading reading = engine->read(greyImage(QImage(path)));
        const QJsonObject line{{u"image"_s, path},
                               {u"text"_s, reading.text()},
                               {u"confidence"_s, reading.confidence()}};
        std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    }
    return 0;
}
