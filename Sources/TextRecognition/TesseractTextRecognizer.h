// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/TextRecognizer.h"

#include <chrono>
#include <memory>

/// Reads text with the models of Tesseract that are installed.
///
/// Any number of requests may be performed at once, each on its caller's thread with a helper per
/// further core. Models are loaded when they are needed, kept for the next picture and dropped
/// after some minutes without one.
class TesseractTextRecognizer final : public TextRecognizer
{
public:
    /// `tessdataFolder`: where the `.traineddata` files stand; empty means where the system's
    /// packages put them.
    explicit TesseractTextRecognizer(const QString &tessdataFolder = {});
    ~TesseractTextRecognizer() override;

    /// Loads what nearly every picture needs, on another thread.
    void prepare() override;
    /// What the models installed now can read; the same at both levels.
    /// Throws RecognitionError if there is no model at all.
    QStringList supportedRecognitionLanguages(const TextRecognitionRequest &request) const override;
    /// Without languages in the request everything installed may be read; languages without a
    /// model are passed over. Among equally good readings the earlier language is taken.
    /// Throws RecognitionError if there is no model at all.
    void perform(TextRecognitionRequest &request, const QImage &image) override;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};
