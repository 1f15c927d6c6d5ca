// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "Languages.h"
#include "LineTask.h"
#include "Workers.h"

#include <functional>
#include <vector>

namespace recognition {

/// Which of the models of scripts with Chinese characters reads `tasks`, longest first, best: kana
/// make them Japanese, else the surest model wins.
QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &models,
                 EngineCache &engines, Workers &workers);

/// By how much the same characters, read by both models, are likelier simplified Chinese than
/// traditional: where the readings differ by how sure the models are, and by how common they are.
double simplifiedLead(const Reading &simplified, const Reading &traditional);

/// The sum of leads of what is written, by the models of both forms.
using FormLead = std::function<double(const QString &simplified, const QString &traditional)>;

/// The model among `models` for the form of Chinese that `lead` is clear about, where `best` is one
/// of them; else `best`.
QString chineseModel(const QString &best, const QStringList &models, const FormLead &lead);
/// By how much `lines`, a page's longest, are likelier simplified Chinese than traditional.
double simplifiedLead(const std::vector<LineTask *> &lines, const QString &simplified,
                      const QString &traditional, EngineCache &engines);

/// How many kana a text has, without the middle dot, which Chinese has too.
int kanaIn(const QString &text);

/// How much of a line is looked at to tell them apart, in letter heights.
inline constexpr int hanSampleLength = 15;

} // namespace recognition
