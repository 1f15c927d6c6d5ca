// SPDX-License-Identifier: MIT
// A file of trained data: it is refused, or reads something.

#include "FuzzInput.h"
#include "TextRecognition/Network/Engine.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {
/// A dark stroke now and then on white, as high as the seeds' networks read.
GreyImage someLine()
{
    GreyImage line(31, 8, 255);
    for (int x = 0; x < line.width; x += 3) {
        line.row(4)[x] = 0;
    }
    return line;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const GreyImage line = someLine();
    const QByteArray content = FuzzInput(data, size).rest();
    QFile file(folder.filePath(u"eng.traineddata"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        return 0;
    }
    file.close();
    const auto engine = Engine::load(ModelFolder(folder.path()), u"eng"_s, Dictionary::With);
    if (!engine) {
        return 0;
    }
    const Reading reading = engine->read(line);
    for (const ReadWord &word : reading.words) {
        require(word.confidence >= 0 && word.confidence <= 100, "a confidence is a percentage");
        require(word.box.left >= 0 && word.box.right <= line.width, "a word is inside its line");
    }
    engine->knows(u"ab"_s);
    return 0;
}
