// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/TextRecognizer.h"

#include <chrono>
#include <memory>

/// Reads text with the models of Tesseract that are installed.
///
/// Any number of requests may be performed at once, each on its caller's thread with a helper per
/// further core. Models are loaded when they are needed, kept for the next picture and dropped
/// after some minutes without one. A picture may take so much processor time, on all threads
/// together, as its size allows; then what has been read by then is its text.
class TesseractTextRecognizer final : public TextRecognizer
{
public:
    using Budget = std::chrono::nanoseconds (*)(qint64 pixels);
    using ThreadClock = std::chrono::nanoseconds (*)();

    /// `tessdataFolder`: where the `.traineddata` files stand; empty means where the system's
    /// packages put them.
    explicit TesseractTextRecognizer(const QString &tessdataFolder = {});
    /// With a budget of `time(pixels)` for a picture, and `clock` for the processor time that a
    /// thread has taken.
    TesseractTextRecognizer(const QString &tessdataFolder, Budget time, ThreadClock clock);
    ~TesseractTextRecognizer() override;

    /// Loads what the last picture was read with, before the first what the locale's language is
    /// read with, on another thread.
    void prepare() override;
    /// What the models installed now can read; the same at both levels.
    /// Throws RecognitionError if there is no model at all.
    QStringList supportedRecognitionLanguages(const TextRecognitionRequest &request) const override;
    /// Without languages in the request everything installed may be read; languages without a
    /// model are passed over. Among equally good readings the earlier language is taken.
    /// Models that cannot be read are passed over. Throws RecognitionError if there is no model at
    /// all, or none that can be read, or nothing was read and one that cannot be might have.
    void perform(TextRecognitionRequest &request, const QImage &image) override;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};
