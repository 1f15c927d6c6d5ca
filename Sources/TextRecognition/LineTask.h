// SPDX-License-Identifier: MIT
#pragma once

#include "EngineCache.h"
#include "LineImage.h"
#include "Lines.h"
#include "Reading.h"
#include "Script.h"
#include "ScriptShape.h"

#include <QMap>

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <tuple>
#include <vector>

namespace recognition {

/// A kind of writing that looks less likely than this is asked for only when no other is read.
inline constexpr double unlikelyKind = 0.02;

/// Whether lines are read with the word lists of `model`. Those of the whole Latin script take 100
/// MB and a second to load, and make its readings hardly better (7.36 against 7.35 % on the screens
/// of a wide corpus).
Dictionary dictionaryOf(const QString &model);

/// One line on its way from the picture to its text. Several threads may read it at once; the
/// rest is for one at a time.
class LineTask
{
public:
    LineTask(const GreyImage &page, TextLine line);

    const TextLine &line() const { return m_line; }
    const LineImage &image() const { return m_image; }
    /// How likely the line is of each kind of writing, by its looks.
    const KindShares &kinds() const { return m_kinds; }
    double likelihood(Script of) const { return m_kinds[std::size_t(kindOf(of))]; }
    /// About how many letters fit.
    double length() const { return double(m_line.box.width()) / std::max(1, m_line.letterHeight); }

    /// Whether it hardly looks like the kind of writing that `of` is of.
    bool looksUnlike(Script of) const { return likelihood(of) < unlikelyKind; }
    /// Whether it is in another script, by its looks and by what a model of `of` reads.
    bool isHopeless(Script of, const Reading &reading) const;
    /// The whole line as `model` reads it at first, however unsure, remembered for the next time.
    Reading readOnce(EngineCache &engines, const QString &model);
    /// The same of several lines of about one length, which takes less time together.
    static void readOnce(const std::vector<LineTask *> &tasks, EngineCache &engines,
                         const QString &model);
    /// As it reads it most surely, remembered too.
    Reading read(EngineCache &engines, const QString &model);
    static void read(const std::vector<LineTask *> &tasks, EngineCache &engines,
                     const QString &model);
    /// A part about `letters` letter heights long, cut in a gap between words: from the right if
    /// `fromRight`. A line hardly longer is read as a whole. Read once only, however unsure, which
    /// is enough to compare models.
    Reading sample(EngineCache &engines, const QString &model, int letters, bool fromRight);
    /// The same of the part of the prepared line from `left` to `right`, not remembered; its words
    /// stand where they stand in the whole line.
    Reading readPart(EngineCache &engines, const QString &model, int left, int right) const;
    /// How likely the part is of each kind of writing.
    KindShares kindsOfPart(int left, int right) const;

    /// Takes `reading` for what the line says, in the script of its model.
    void take(const Reading &reading);

    /// Takes the surest reading of the whole line that is known, unless one was taken before.
    void takeWhatIsRead();

    /// What the line is taken to say.
    Reading best;
    Script script = Script::Latin;
    /// Other readings of the whole line, for those who want to choose.
    QList<Reading> others() const { return m_readings.values(); }

private:
    std::optional<Reading> known(const QString &model) const;
    std::optional<Reading> knownSample(const std::tuple<QString, int, bool> &key) const;
    Reading sampleOf(EngineCache &engines, const QString &model, int length, bool fromRight);

    TextLine m_line;
    LineImage m_image;
    KindShares m_kinds;
    /// Guards the readings; on the heap so that tasks can be moved.
    std::unique_ptr<std::mutex> m_mutex = std::make_unique<std::mutex>();
    QMap<QString, Reading> m_readings;
    /// By model, columns and side.
    std::map<std::tuple<QString, int, bool>, Reading> m_samples;
};

} // namespace recognition
