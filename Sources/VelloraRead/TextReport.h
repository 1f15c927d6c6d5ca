// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/TextRecognizer.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What was read in one file, or why nothing could be.
struct FileReading
{
    /// As the user wrote it.
    QString file;
    /// The lines in reading order.
    QList<RecognizedTextObservation> lines;
    /// What recognition took by the clock, and of the processors' time, in milliseconds.
    double milliseconds = 0;
    double processorMilliseconds = 0;
    /// Whether an earlier picture had loaded the models already.
    bool isWarm = false;
    /// One sentence; empty if the file was read.
    QString error;

    /// The best readings, a line each, without an end of line after the last.
    QString text() const;
};

/// One object of JSON without an end of line: "image", "text", "lines" (each with "text", "box" as
/// left, top, width and height in pixels from the picture's top-left corner, and "confidence" from
/// 0 to 1), "ms", "cpu", "warm", and "error" if there is one.
QByteArray jsonLine(const FileReading &reading);
