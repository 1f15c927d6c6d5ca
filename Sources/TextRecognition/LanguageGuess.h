// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace recognition {

/// How likely a text is in a language of Latin script.
struct LanguageScore
{
    /// The language's model, such as "fra".
    QString model;
    /// A logarithm to the base of 2; only differences mean anything.
    double bits = 0;
};

/// Every known language of Latin script, likeliest first, judged by groups of three letters.
///
/// On messages of programs that the profiles were not made from, the first is right for 70 % of
/// those with 10 to 19 characters, 89 % with 20, 96 % with 30, 98.6 % with 60.
QList<LanguageScore> guessLanguage(const QString &text);

} // namespace recognition
