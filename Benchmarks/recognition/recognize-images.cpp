// SPDX-License-Identifier: MIT
//
// recognize-images IMAGE…: reads every image as the program would and prints one line of JSON per
// image: {"image": the path as given, "text": …, "ms": the time for recognition,
// "cpu": the processor time of all threads, in milliseconds}.

#include "TextRecognition/TesseractTextRecognizer.h"

#include <QElapsedTimer>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

QString recognizedText(TesseractTextRecognizer &recognizer, const QImage &image)
{
    TextRecognitionRequest request;
    request.recognitionLevel = RecognitionLevel::Accurate;
    request.usesLanguageCorrection = true;
    request.automaticallyDetectsLanguage = true;
    recognizer.perform(request, image);
    QStringList lines;
    for (const RecognizedTextObservation &observation : request.results) {
        for (const RecognizedText &best : observation.topCandidates(1)) {
            lines.append(best.string);
        }
    }
    return lines.join(u'\n');
}

} // namespace

int main(int argc, char **argv)
{
    TesseractTextRecognizer recognizer;
    try {
        for (int i = 1; i < argc; ++i) {
            const QString path = QString::fromLocal8Bit(argv[i]);
            const QImage image(path);
            QElapsedTimer timer;
            timer.start();
            const std::clock_t before = std::clock();
            const QString text = recognizedText(recognizer, image);
            const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
            const double cpu = double(std::clock() - before) * 1e3 / CLOCKS_PER_SEC;
            const QJsonObject line{
                {u"image"_s, path}, {u"text"_s, text}, {u"ms"_s, milliseconds}, {u"cpu"_s, cpu}};
            std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
            std::fflush(stdout);
        }
    } catch (const RecognitionError &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
