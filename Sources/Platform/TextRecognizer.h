// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <stdexcept>
#include <stop_token>

/// Why a recognition could not be done, in words for the user.
class RecognitionError : public std::runtime_error
{
public:
    /// `english` is the same sentence for the log.
    explicit RecognitionError(const QString &description, const QString &english = {})
        : std::runtime_error(description.toStdString())
        , m_english(english.isEmpty() ? description : english)
    {
    }

    /// One sentence that a person understands, in the language of the program's windows.
    QString localizedDescription() const { return QString::fromUtf8(what()); }

    /// The same in English.
    QString englishDescription() const { return m_english; }

private:
    QString m_english;
};

/// One reading of one line.
struct RecognizedText
{
    QString string;
    /// From 0 (a guess) to 1 (certain).
    double confidence = 0;
};

/// One line of text found in the image.
struct RecognizedTextObservation
{
    /// Where it stands, in pixels of the image, origin top-left, y down.
    QRectF boundingBox;
    /// The line's readings, best first.
    QList<RecognizedText> candidates;

    /// At most `maximum` readings, best first.
    QList<RecognizedText> topCandidates(int maximum) const { return candidates.mid(0, maximum); }
};

enum class RecognitionLevel { Accurate, Fast };

/// What is to be recognized, and how; filled with the results by `TextRecognizer::perform`.
///
/// Configured on one thread, then performed once on another and not touched by the first again.
struct TextRecognitionRequest
{
    using CompletionHandler = std::function<void(const TextRecognitionRequest &,
                                                 const std::optional<RecognitionError> &)>;

    RecognitionLevel recognitionLevel = RecognitionLevel::Fast;
    bool usesLanguageCorrection = false;
    bool automaticallyDetectsLanguage = false;
    /// Language tags, most preferred first; empty leaves the choice to the recognizer.
    QStringList recognitionLanguages;
    /// Ends the recognition once a stop is requested, from any thread.
    std::stop_token stop;
    /// Called by `perform`, on its thread, when the results are there or recognition failed.
    CompletionHandler completionHandler;
    /// The lines in reading order.
    QList<RecognizedTextObservation> results;
};

/// Reads the text in pictures.
///
/// Every operation may be called from any thread; several requests may be performed at once.
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;

    /// Hints that a picture will follow within seconds, so that what is slow to load, and was
    /// needed for the last one, can be loaded meanwhile. Returns at once.
    virtual void prepare() {}

    /// The language tags (such as "ar-SA", "zh-Hans") that can be read at the request's level.
    /// Throws RecognitionError if that cannot be told.
    virtual QStringList
    supportedRecognitionLanguages(const TextRecognitionRequest &request) const = 0;

    /// Reads `image` and calls the request's completion handler before it returns. A picture that
    /// takes too long is read in part. If a stop is requested, it returns within 50 ms of
    /// processor time and does not call the handler.
    /// Throws RecognitionError if the request could not be performed at all, and std::exception if
    /// the system has too little left of anything.
    virtual void perform(TextRecognitionRequest &request, const QImage &image) = 0;
};
