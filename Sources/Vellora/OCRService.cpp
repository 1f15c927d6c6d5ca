// SPDX-License-Identifier: MIT
#include "OCRService.h"

#include "GlobalQueue.h"
#include "Platform/Platform.h"

#include <QCoreApplication>

#include <new>
#include <system_error>

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

/// What the user is told of a failure that is not the recognizer's own.
RecognitionError errorOf(const std::exception &failure)
{
    const char *text = QT_TRANSLATE_NOOP("OCRService", "Reading the picture failed unexpectedly.");
    if (dynamic_cast<const std::bad_alloc *>(&failure)) {
        text = QT_TRANSLATE_NOOP(
            "OCRService",
            "There is not enough memory to read the picture. Close some programs and try again.");
    } else if (dynamic_cast<const std::system_error *>(&failure)) {
        text = QT_TRANSLATE_NOOP(
            "OCRService",
            "The system cannot start any more work. Close some programs and try again.");
    }
    return RecognitionError(QCoreApplication::translate("OCRService", text),
                            QString::fromUtf8(text));
}

/// One recognition: its request, and how its outcome gets back to the main thread.
class Recognition
{
public:
    Recognition(OCRService::Completion completion, std::stop_token stop)
        : m_completion(std::move(completion))
        , m_stop(std::move(stop))
    {
    }

    void deliver(RecognitionOutcome outcome) const
    {
        Platform::current().mainQueue->async(
            [completion = m_completion, stop = m_stop, outcome = std::move(outcome)] {
                // Here, as it may have been stopped while the outcome waited its turn.
                if (!stop.stop_requested()) {
                    completion(outcome);
                }
            });
    }

    void perform(TextRecognizer &recognizer, const QImage &image)
    {
        try {
            recognizer.perform(request, image);
        } catch (const RecognitionError &error) {
            deliver(OCRError::vision(error));
        } catch (const std::exception &failure) {
            deliver(OCRError::vision(errorOf(failure)));
        }
    }

    TextRecognitionRequest request;

private:
    const OCRService::Completion m_completion;
    const std::stop_token m_stop;
};
} // namespace

void OCRService::recognize(const QImage &image, const Completion &completion,
                           const std::stop_token &stop)
{
    const auto recognition = std::make_shared<Recognition>(completion, stop);
    TextRecognitionRequest &request = recognition->request;
    request.completionHandler =
        [recognition = recognition.get()](const TextRecognitionRequest &performed,
                                          const std::optional<RecognitionError> &error) {
            if (error) {
                recognition->deliver(OCRError::vision(*error));
                return;
            }
            const QString text = joinedText(performed.results);
            recognition->deliver(text.isEmpty() ? RecognitionOutcome(OCRError::noText())
                                                : RecognitionOutcome(text));
        };
    request.recognitionLevel = RecognitionLevel::Accurate;
    request.usesLanguageCorrection = true;
    request.automaticallyDetectsLanguage = true;
    request.stop = stop;

    TextRecognizer &recognizer = *Platform::current().textRecognizer;
    const QStringList languages = usableLanguages(recognizer, request);
    if (!languages.isEmpty()) {
        request.recognitionLanguages = languages;
    }

    try {
        GlobalQueue::shared().async(
            [recognition, image, &recognizer] { recognition->perform(recognizer, image); });
    } catch (const std::exception &failure) {
        recognition->deliver(OCRError::vision(errorOf(failure)));
    }
}

void OCRService::waitForDone()
{
    GlobalQueue::shared().waitForDone();
}
