// SPDX-License-Identifier: MIT
#include "OCRService.h"

#include "Platform/Platform.h"

#include <QThreadPool>

using namespace Qt::StringLiterals;

namespace {
/// The languages that are read, most preferred first. Arabic leads on purpose.
const QStringList preferredLanguages{u"ar-SA"_s, u"ars-SA"_s,  u"en-US"_s,   u"fr-FR"_s,
                                     u"de-DE"_s, u"es-ES"_s,   u"it-IT"_s,   u"pt-BR"_s,
                                     u"ru-RU"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"ja-JP"_s,
                                     u"ko-KR"_s, u"tr-TR"_s,   u"nl-NL"_s};

/// The preferred languages that the recognizer supports, in the preferred order.
QStringList usableLanguages(const TextRecognizer &recognizer, const TextRecognitionRequest &request)
{
    QStringList supported;
    try {
        supported = recognizer.supportedRecognitionLanguages(request);
    } catch (const RecognitionError &) {
        // Then its own default languages are left untouched.
    }
    QStringList usable;
    for (const QString &tag : preferredLanguages) {
        if (supported.contains(tag)) {
            usable << tag;
        }
    }
    return usable;
}

/// The best reading of every line that has one, a line each.
QString joinedText(const QList<RecognizedTextObservation> &observations)
{
    QStringList lines;
    for (const RecognizedTextObservation &observation : observations) {
        const auto candidates = observation.topCandidates(1);
        if (!candidates.isEmpty()) {
            lines << candidates.first().string;
        }
    }
    return lines.join(u'\n');
}

void deliver(const OCRService::Completion &completion, RecognitionOutcome outcome)
{
    Platform::current().mainQueue->async(
        [completion, outcome = std::move(outcome)] { completion(outcome); });
}
} // namespace

void OCRService::recognize(const QImage &image, const Completion &completion)
{
    auto request = std::make_shared<TextRecognitionRequest>();
    request->completionHandler = [completion](const TextRecognitionRequest &performed,
                                              const std::optional<RecognitionError> &error) {
        if (error) {
            deliver(completion, OCRError::vision(*error));
            return;
        }
        const QString text = joinedText(performed.results);
        deliver(completion,
                text.isEmpty() ? RecognitionOutcome(OCRError::noText()) : RecognitionOutcome(text));
    };
    request->recognitionLevel = RecognitionLevel::Accurate;
    request->usesLanguageCorrection = true;
    request->automaticallyDetectsLanguage = true;

    TextRecognizer &recognizer = *Platform::current().textRecognizer;
    const QStringList languages = usableLanguages(recognizer, *request);
    if (!languages.isEmpty()) {
        request->recognitionLanguages = languages;
    }

    QThreadPool::globalInstance()->start([request, image, completion, &recognizer] {
        try {
            recognizer.perform(*request, image);
        } catch (const RecognitionError &error) {
            deliver(completion, OCRError::vision(error));
        } catch (const std::exception &error) {
            deliver(completion,
                    OCRError::vision(RecognitionError(QString::fromUtf8(error.what()))));
        }
    });
}
