// SPDX-License-Identifier: MIT
// A picture, as pixels or as a file, and what is read on it. The first byte says which: 0 a file,
// else the width of grey pixels in columns.

#include "FuzzInput.h"
#include "TextRecognition/TesseractTextRecognizer.h"
#include "VelloraRead/PictureFile.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {
/// Larger ones only take longer.
constexpr int largestSide = 256;

QImage fromFile(const QByteArray &content)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"picture"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        return {};
    }
    file.close();
    try {
        return pictureFromFile(QFile::encodeName(path).constData());
    } catch (const PictureError &) {
        return {};
    }
}

QImage fromPixels(int width, const QByteArray &pixels)
{
    const int height = std::min<int>(static_cast<int>(pixels.size()) / width, largestSide);
    if (height == 0) {
        return {};
    }
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int grey = static_cast<unsigned char>(pixels.at(y * width + x));
            image.setPixel(x, y, qRgb(grey, grey, grey));
        }
    }
    return image;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static QGuiApplication app(argc, nullptr);
    static TesseractTextRecognizer recognizer;
    FuzzInput input(data, size);
    const int width = input.byte();
    const QImage image = width == 0 ? fromFile(input.rest()) : fromPixels(width, input.rest());
    if (image.isNull() || image.width() > largestSide || image.height() > largestSide) {
        return 0;
    }
    TextRecognitionRequest request;
    // One model: more of them only take longer.
    request.recognitionLanguages = {u"en-US"_s};
    request.completionHandler = [&image](const TextRecognitionRequest &performed,
                                         const std::optional<RecognitionError> &) {
        for (const RecognizedTextObservation &each : performed.results) {
            require(QRectF(image.rect()).contains(each.boundingBox), "a line is in the picture");
            for (const RecognizedText &candidate : each.candidates) {
                require(candidate.confidence >= 0 && candidate.confidence <= 1,
                        "a confidence is a share");
                require(!candidate.string.isEmpty() && !candidate.string.contains(u'\n'),
                        "a line is a line");
            }
        }
    };
    try {
        recognizer.perform(request, image);
    } catch (const RecognitionError &) {
        // Without the model there is nothing to read with.
    }
    return 0;
}
