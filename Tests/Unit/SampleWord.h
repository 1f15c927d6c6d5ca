// SPDX-License-Identifier: MIT
#pragma once

#include "TextRecognition/Reading.h"

/// A word as a model might have read it, from column `left` to `right` of a prepared line.
inline recognition::ReadWord word(const QString &text, double confidence, int left, int right)
{
    recognition::ReadWord word;
    word.text = text;
    word.confidence = confidence;
    word.box = {left, 0, right, 30};
    return word;
}
