// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"

#include <QList>
#include <QString>

namespace recognition {

/// One word as a model reads it.
struct ReadWord
{
    QString text;
    /// Whether a blank stands before it.
    bool afterBlank = true;
    /// Whether the model's word lists have it.
    bool isListed = false;
    /// From 0 to 100, as the engine gives it.
    double confidence = 0;
    /// In pixels of the prepared line.
    Box box;
};

/// What one model reads in one line.
struct Reading
{
    QString model;
    /// In reading order.
    QList<ReadWord> words;

    bool isEmpty() const { return words.isEmpty(); }
    /// The words, with single blanks where the model saw blanks.
    QString text() const;
    /// Letters and marks without the blanks.
    int characters() const;
    /// The words' confidence weighted by their length, 0 to 100.
    double confidence() const;
    double leastConfidence() const;
};

} // namespace recognition
