// SPDX-License-Identifier: MIT
#include "TesseractTextRecognizer.h"

#include "IdleDropper.h"
#include "Languages.h"
#include "PageReader.h"

#include <QImage>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// More helpers than this gain nothing on a screen's few dozen lines.
constexpr int mostThreads = 2;

/// How long models are kept without a picture to read.
constexpr auto keptFor = std::chrono::minutes(3);

[[noreturn]] void throwNoModels(const ModelFolder &folder)
{
    throw RecognitionError(
        u"No language models are installed for text recognition. Install a package such as "
        u"tesseract-ocr-eng, or put trained data into %1."_s.arg(folder.path()));
}

} // namespace

class TesseractTextRecognizer::Private
{
public:
    explicit Private(const QString &folder)
        : engines(ModelFolder(folder))
        , dropper(engines, keptFor)
        , workers(std::clamp(QThread::idealThreadCount(), 1, mostThreads))
    {
    }

    Languages installed() const
    {
        Languages languages(engines.folder().installed());
        if (languages.isEmpty()) {
            throwNoModels(engines.folder());
        }
        return languages;
    }

    EngineCache engines;
    IdleDropper dropper;
    Workers workers;
    std::atomic<bool> isPreparing = false;
    /// Last, so that it is waited for before what it uses goes away.
    std::jthread preparation;
};

TesseractTextRecognizer::TesseractTextRecognizer(const QString &tessdataFolder)
    : m_p(std::make_unique<Private>(tessdataFolder))
{
}

TesseractTextRecognizer::~TesseractTextRecognizer() = default;

void TesseractTextRecognizer::prepare()
{
    if (m_p->isPreparing.exchange(true)) {
        return;
    }
    const auto load = [p = m_p.get()] {
        const Languages languages(p->engines.folder().installed());
        if (!languages.isEmpty()) {
            p->engines.engine(languages.models(languages.scripts().first()).first(),
                              Dictionary::With);
        }
        p->dropper.restart();
        p->isPreparing = false;
    };
    try {
        m_p->preparation = std::jthread(load);
    } catch (const std::system_error &) {
        // The system has no thread left: what is needed is loaded with the picture.
        m_p->isPreparing = false;
    }
}

QStringList
TesseractTextRecognizer::supportedRecognitionLanguages(const TextRecognitionRequest &) const
{
    return m_p->installed().tags();
}

void TesseractTextRecognizer::perform(TextRecognitionRequest &request, const QImage &image)
{
    const Languages languages = m_p->installed().restrictedTo(request.recognitionLanguages);
    request.results.clear();
    for (const PageLine &line : readPage(greyImage(image), languages, m_p->engines, m_p->workers)) {
        RecognizedTextObservation observation;
        observation.boundingBox =
            QRectF(line.box.left, line.box.top, line.box.width(), line.box.height());
        for (const LineReading &reading : line.readings) {
            observation.candidates.append({reading.text, reading.confidence});
        }
        request.results.append(observation);
    }
    m_p->dropper.restart();
    if (request.completionHandler) {
        request.completionHandler(request, std::nullopt);
    }
}
