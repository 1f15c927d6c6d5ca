// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/TextRecognizer.h"

#include <QImage>
#include <QString>

#include <functional>
#include <optional>
#include <stop_token>
#include <variant>

/// Why an image gave no text.
class OCRError
{
public:
    enum class Case {
        /// The recognizer failed; `underlying` says why.
        vision,
        /// There was no image. No step of recognition raises it.
        emptyImage,
        /// Recognition succeeded and found nothing.
        noText,
    };

    static OCRError vision(const RecognitionError &underlying)
    {
        return {Case::vision, underlying};
    }
    static OCRError emptyImage() { return {Case::emptyImage, std::nullopt}; }
    static OCRError noText() { return {Case::noText, std::nullopt}; }

    Case value() const { return m_value; }
    /// The recognizer's error; present in the case `vision` alone.
    const std::optional<RecognitionError> &underlying() const { return m_underlying; }

private:
    OCRError(Case value, std::optional<RecognitionError> underlying)
        : m_value(value)
        , m_underlying(std::move(underlying))
    {
    }

    Case m_value;
    std::optional<RecognitionError> m_underlying;
};

/// The recognized text, or why there is none.
using RecognitionOutcome = std::variant<QString, OCRError>;

/// Turns an image into one text.
namespace OCRService {
using Completion = std::function<void(const RecognitionOutcome &)>;

/// Reads `image` off the main thread and calls `completion` on it later, never from within this
/// call: with the lines, in the recognizer's order, joined by line feeds, or with an error. A
/// recognizer that fails in both of its ways at once is reported twice. Once `stop` is requested,
/// on the main thread, `completion` is no longer called, and the work ends soon. Main thread only.
void recognize(const QImage &image, const Completion &completion, const std::stop_token &stop = {});

/// Returns when no recognition is under way any more; the completions may still be to come. Main
/// thread only.
void waitForDone();
} // namespace OCRService
