// SPDX-License-Identifier: MIT
#include "TesseractTextRecognizer.h"

#include "Budget.h"
#include "Effort.h"
#include "IdleDropper.h"
#include "Languages.h"
#include "LineTask.h"
#include "PageReader.h"

#include <QCoreApplication>
#include <QImage>
#include <QLocale>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// More helpers than this gain nothing on a screen's few dozen lines.
constexpr int mostThreads = 2;

/// How long models are kept without a picture to read.
constexpr auto keptFor = std::chrono::minutes(3);

/// The text, a source of a translation, with what stands for its %1.
RecognitionError errorOf(const char *text, const QString &about)
{
    return RecognitionError(QCoreApplication::translate("TesseractTextRecognizer", text).arg(about),
                            QString::fromUtf8(text).arg(about));
}

RecognitionError noModels(const ModelFolder &folder)
{
    return errorOf(QT_TRANSLATE_NOOP(
                       "TesseractTextRecognizer",
                       "No language models are installed for text recognition. Install a package "
                       "such as tesseract-ocr-eng, or put trained data into %1."),
                   folder.path());
}

RecognitionError unreadableModels(const QStringList &models)
{
    if (models.size() == 1) {
        return errorOf(QT_TRANSLATE_NOOP("TesseractTextRecognizer",
                                         "The language model “%1” is damaged. Install its package "
                                         "again."),
                       models.first());
    }
    return errorOf(QT_TRANSLATE_NOOP("TesseractTextRecognizer",
                                     "The language models %1 are damaged. Install their packages "
                                     "again."),
                   u'“' + models.join(u"”, “"_s) + u'”');
}

} // namespace

class TesseractTextRecognizer::Private
{
public:
    Private(const QString &folder, Budget time, ThreadClock threadClock)
        : engines(ModelFolder(folder))
        , dropper(engines, keptFor)
        , workers(std::clamp(QThread::idealThreadCount(), 1, mostThreads))
        , budget(time)
        , clock(threadClock)
    {
    }

    Languages readable() const
    {
        Languages languages(engines.readable());
        if (!languages.isEmpty()) {
            return languages;
        }
        const QStringList unreadable = engines.unreadable();
        throw unreadable.isEmpty() ? noModels(engines.folder()) : unreadableModels(unreadable);
    }

    std::vector<PageLine> read(const TextRecognitionRequest &request, const QImage &image)
    {
        Effort effort(request.stop, budget(qint64(image.width()) * image.height()), clock);
        const Effort::Share share(&effort);
        GreyImage page;
        while (true) {
            try {
                if (page.isEmpty()) {
                    page = greyImage(image);
                }
                return readPage(page, readable().restrictedTo(request.recognitionLanguages),
                                engines, workers);
            } catch (const UnreadableModel &) {
                // From now on it is no longer among those that can be read.
            } catch (const Spent &) {
                return {};
            }
        }
    }

    void remember(const std::vector<PageLine> &lines)
    {
        QStringList models;
        for (const PageLine &line : lines) {
            if (!models.contains(line.model)) {
                models.append(line.model);
            }
        }
        const std::lock_guard lock(m_mutex);
        m_lastModels = models.isEmpty() ? m_lastModels : models;
    }

    /// What the next picture is likely to need.
    QStringList likelyModels() const
    {
        {
            const std::lock_guard lock(m_mutex);
            if (!m_lastModels.isEmpty()) {
                return m_lastModels;
            }
        }
        const Languages languages(engines.readable());
        return languages.isEmpty() ? QStringList()
                                   : QStringList{languages.firstModelFor(QLocale().uiLanguages())};
    }

    void load(const QStringList &models, const std::stop_token &stop)
    {
        Effort effort(stop);
        const Effort::Share share(&effort);
        for (const QString &model : models) {
            engines.engine(model, dictionaryOf(model));
        }
    }

    EngineCache engines;
    IdleDropper dropper;
    Workers workers;
    const Budget budget;
    const ThreadClock clock;
    std::atomic<bool> isPreparing = false;

private:
    mutable std::mutex m_mutex;
    /// What the lines of the last picture with text were read with.
    QStringList m_lastModels;

public:
    /// Last, so that it is stopped and waited for before what it uses goes away.
    std::jthread preparation;
};

TesseractTextRecognizer::TesseractTextRecognizer(const QString &tessdataFolder)
    : TesseractTextRecognizer(tessdataFolder, &budgetFor, &threadTime)
{
}

TesseractTextRecognizer::TesseractTextRecognizer(const QString &tessdataFolder, Budget time,
                                                 ThreadClock clock)
    : m_p(std::make_unique<Private>(tessdataFolder, time, clock))
{
}

TesseractTextRecognizer::~TesseractTextRecognizer() = default;

void TesseractTextRecognizer::prepare()
{
    if (m_p->isPreparing.exchange(true)) {
        return;
    }
    const auto load = [p = m_p.get()](const std::stop_token &stop) {
        try {
            p->load(p->likelyModels(), stop);
            p->dropper.restart();
        } catch (const std::exception &) {
            // Reading the picture will meet the same, and tell it.
        }
        p->isPreparing = false;
    };
    try {
        m_p->preparation = std::jthread(load);
    } catch (const std::exception &) {
        // The system has no thread or no memory left: what is needed is loaded with the picture.
        m_p->isPreparing = false;
    }
}

QStringList
TesseractTextRecognizer::supportedRecognitionLanguages(const TextRecognitionRequest &) const
{
    return m_p->readable().tags();
}

void TesseractTextRecognizer::perform(TextRecognitionRequest &request, const QImage &image)
{
    request.results.clear();
    std::vector<PageLine> lines;
    try {
        lines = m_p->read(request, image);
    } catch (const Stopped &) {
        m_p->dropper.restart();
        return;
    }
    m_p->dropper.restart();
    if (lines.empty() && !m_p->engines.unreadable().isEmpty()) {
        throw unreadableModels(m_p->engines.unreadable());
    }
    m_p->remember(lines);
    for (const PageLine &line : lines) {
        RecognizedTextObservation observation;
        observation.boundingBox =
            QRectF(line.box.left, line.box.top, line.box.width(), line.box.height());
        for (const LineReading &reading : line.readings) {
            observation.candidates.append({reading.text, reading.confidence});
        }
        request.results.append(observation);
    }
    if (request.completionHandler) {
        request.completionHandler(request, std::nullopt);
    }
}
