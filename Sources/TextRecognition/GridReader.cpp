// SPDX-License-Identifier: MIT
#include "GridReader.h"

#include "Effort.h"
#include "GridCells.h"
#include "GridVote.h"
#include "LanguageChooser.h"
#include "Resample.h"
#include "ScriptChooser.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// White above and below the ink of a row, as a share of its height.
constexpr double whiteAround = 0.1;

/// A row whose characters are less certain than this on average, as a logarithm, is not read.
constexpr double leastCertainty = -1.0;

/// A row of so many different characters that are so certain on average is text.
constexpr double sureCertainty = -0.2;
constexpr std::size_t fewestSure = 4;

/// Cells of nothing between words that are read with them.
constexpr int widestBlank = 2;

/// What one cell may say against a character, as a logarithm: it may be read wrong.
constexpr float leastVote = -6;

/// A word that begins with so many characters less likely than this on average may be in another
/// script or language.
constexpr int fewestOfWord = 4;
constexpr double leastPeak = 0.9;

/// Of as many different characters at least, as a share of its own: a rule of `=` is a word in no
/// script.
constexpr double leastVariety = 0.6;

/// A row that is read less surely shows nothing of its language.
constexpr double leastOfForeign = 0.5;

/// Rows that are read at once: the more, the less often weights are fetched.
constexpr std::size_t rowsAtOnce = 4;

/// A block with more unread rows than this share of them is no block, or in another script.
constexpr double mostUnread = 0.2;

/// A block of fewer rows is read as lines are: in one row alone, letters of any pitch may stand as
/// if in cells ("jumps over 13 lazy dogs" in 48 pixels of DejaVu Sans does).
constexpr std::size_t fewestRows = 2;

/// Whether what a row says is no chance: many different characters, read surely.
bool isSurelyText(const DecodedCells &row)
{
    std::set<std::ptrdiff_t> characters;
    for (const std::vector<float> &scores : row.scores) {
        characters.insert(std::ranges::max_element(scores) - scores.begin());
    }
    return row.certainty >= sureCertainty && characters.size() >= fewestSure;
}

class GridReader
{
public:
    GridReader(const GreyImage &page, const Grid &grid, std::shared_ptr<const Engine> engine)
        : m_grid(grid)
        , m_lines(gridLines(page, grid))
        , m_ink(inkRows(m_lines))
        , m_engine(std::move(engine))
        , m_characters(m_engine->cellCharacters())
    {
    }

    /// Nothing if it is no text: that a few rows tell, since a large table of something else takes
    /// long to read.
    std::vector<GridText> run(Workers &workers)
    {
        m_decoded.resize(m_lines.size());
        std::vector<std::size_t> some;
        std::vector<std::size_t> others;
        const std::size_t step = std::max<std::size_t>(1, m_lines.size() / rowsAtOnce);
        for (std::size_t i = 0; i < m_lines.size(); ++i) {
            (i % step == step / 2 && some.size() < rowsAtOnce ? some : others).push_back(i);
        }
        read(some);
        const auto unread = std::ranges::count_if(
            some, [this](std::size_t i) { return m_decoded[i].certainty < leastCertainty; });
        if (2 * std::size_t(unread) > some.size()) {
            return {};
        }
        const std::size_t groups = (others.size() + rowsAtOnce - 1) / rowsAtOnce;
        workers.forEach(groups, [&](std::size_t group) {
            const auto first = others.begin() + std::ptrdiff_t(group * rowsAtOnce);
            const auto left = std::size_t(others.end() - first);
            read({first, first + std::ptrdiff_t(std::min(rowsAtOnce, left))});
        });
        vote();
        std::vector<GridText> rows;
        for (std::size_t i = 0; i < m_lines.size(); ++i) {
            rows.push_back(textOf(i));
        }
        return rows;
    }

private:
    void read(const std::vector<std::size_t> &rows)
    {
        std::vector<CellLine> lines;
        for (const std::size_t row : rows) {
            lines.push_back(cellLine(m_lines[row]));
        }
        std::vector<DecodedCells> decoded = m_engine->readCells(lines, m_characters);
        if (Effort *effort = Effort::current();
            effort && std::ranges::any_of(decoded, isSurelyText)) {
            effort->foundText();
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            m_decoded[rows[i]] = std::move(decoded[i]);
        }
    }

    /// The row without what is blank at its ends and more than a few cells of it within: a network
    /// sees letters in long stretches of nothing.
    CellLine cellLine(const GridLine &line) const
    {
        const int ink = m_ink.bottom - m_ink.top;
        const int white = std::max(1, int(std::lround(whiteAround * ink)));
        const double scale = double(m_engine->lineHeight()) / (ink + 2 * white);
        const double perColumn = scale / m_engine->columnWidth();
        GreyImage part(line.picture.width + 2 * white, ink + 2 * white, 255);
        CellLine cells;
        int to = white;
        int next = line.columns.front();
        for (const int column : line.columns) {
            to += edge(std::min(column, next + widestBlank)) - edge(next);
            const int from = edge(column);
            const int width = edge(column + 1) - from;
            for (int y = m_ink.top; y < std::min(m_ink.bottom, line.picture.height); ++y) {
                std::copy_n(line.picture.row(y) + from, width,
                            part.row(y - m_ink.top + white) + to);
            }
            cells.cells.push_back({to * perColumn, (to + width) * perColumn});
            to += width;
            next = column + 1;
        }
        part = cropped(part, {0, 0, std::min(part.width, to + white), part.height});
        const int width = int(std::lround(part.width * scale));
        cells.picture =
            resampled(part, std::max(m_engine->columnWidth(), width), m_engine->lineHeight());
        return cells;
    }

    /// Where a column begins in a row's picture.
    int edge(int column) const
    {
        return std::clamp(int(std::lround(m_grid.columnLeft(column))) - m_grid.box.left, 0,
                          m_grid.box.width());
    }

    /// Cells that look the same hold the same character: all of them together tell which.
    void vote()
    {
        const std::vector<std::vector<std::size_t>> shapes = cellShapes(m_grid, m_lines);
        std::map<std::size_t, std::vector<float>> sums;
        for (std::size_t row = 0; row < shapes.size(); ++row) {
            for (std::size_t i = 0; i < m_decoded[row].scores.size(); ++i) {
                const std::vector<float> &scores = m_decoded[row].scores[i];
                std::vector<float> &sum = sums[shapes[row][i]];
                sum.resize(scores.size(), 0);
                for (std::size_t c = 0; c < scores.size(); ++c) {
                    sum[c] += std::max(scores[c], leastVote);
                }
            }
        }
        for (std::size_t row = 0; row < shapes.size(); ++row) {
            for (std::size_t i = 0; i < m_decoded[row].scores.size(); ++i) {
                m_decoded[row].scores[i] = sums[shapes[row][i]];
            }
        }
    }

    GridText textOf(std::size_t index) const
    {
        const DecodedCells &decoded = m_decoded[index];
        const std::vector<int> &columns = m_lines[index].columns;
        GridText row{m_grid.rows[index], {}, std::exp(decoded.certainty), false};
        double wordSum = 0;
        int wordCells = 0;
        std::set<std::size_t> wordCharacters;
        for (std::size_t i = 0; i < decoded.scores.size(); ++i) {
            if (i > 0 && columns[i] != columns[i - 1] + 1) {
                wordSum = 0;
                wordCells = 0;
                wordCharacters.clear();
            }
            row.text.append(QString(columns[i] - row.text.size(), u' '));
            const auto best = std::ranges::max_element(decoded.scores[i]);
            const auto character = std::size_t(best - decoded.scores[i].begin());
            row.text.append(m_characters.text(character));
            wordSum += double(decoded.peaks[i]);
            ++wordCells;
            wordCharacters.insert(character);
            const bool isVaried = double(wordCharacters.size()) >= leastVariety * double(wordCells);
            row.isDoubtful = row.isDoubtful || (wordCells >= fewestOfWord && isVaried &&
                                                wordSum < leastPeak * wordCells);
        }
        row.isUnread = decoded.certainty < leastCertainty;
        row.isDoubtful = row.isDoubtful || row.isUnread;
        return row;
    }

    const Grid &m_grid;
    const std::vector<GridLine> m_lines;
    const GridRow m_ink;
    const std::shared_ptr<const Engine> m_engine;
    const CellCharacters m_characters;
    /// By row.
    std::vector<DecodedCells> m_decoded;
};

/// What English is read with in fixed pitch where there is such a model: it was trained with code
/// and what programs print, and knows all characters of a keyboard.
const QString english = u"eng"_s;
const QString code = u"code"_s;

/// The model that the grid is read with; empty if it is not in Latin letters.
QString gridModel(const std::vector<LineTask *> &lines, const Languages &languages,
                  EngineCache &engines, Workers &workers)
{
    QStringList candidates;
    for (const Script script : languages.scripts()) {
        candidates.append(languages.models(script).first());
    }
    const QString main = mainModel(lines, candidates, engines, workers);
    if (Languages::scriptOf(main) != Script::Latin) {
        return {};
    }
    return latinModel(lines, languages, engines, workers);
}

/// Reads a block that is in the language of `model`. False if there is no such model.
bool readRows(GridBlock &block, const GreyImage &page, const QString &model, EngineCache &engines,
              Workers &workers)
{
    const auto engine = engines.engine(model, Dictionary::With);
    if (engine) {
        block.model = model;
        block.rows = GridReader(page, block.grid, engine).run(workers);
    }
    return engine != nullptr;
}

/// Whether a row is read, by the model of another language, with letters that English has not.
bool isForeign(const GridText &row)
{
    return row.confidence >= leastOfForeign && hasForeignLetters(row.text);
}

/// Whether a row of `block` goes on right of it in something that does not stand in its cells, such
/// as Chinese.
bool goesOnAside(const GridBlock &block, const std::vector<LineTask> &tasks)
{
    const Box &box = block.grid.box;
    const int right = box.right + int(mostBlankColumns * block.grid.cellWidth);
    return std::ranges::any_of(tasks, [&](const LineTask &task) {
        const Box &line = task.line().box;
        return line.centreX2() >= 2 * box.right && line.left < right &&
               line.centreY2() >= 2 * box.top && line.centreY2() < 2 * box.bottom;
    });
}

/// Reads these blocks, and adds those that are text to `blocks`.
void addGrids(std::vector<GridBlock> &blocks, const std::vector<Grid> &grids, const GreyImage &page,
              std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
              Workers &workers)
{
    for (const Grid &grid : grids) {
        if (grid.rows.size() < fewestRows) {
            continue;
        }
        GridBlock block{grid, {}, {}};
        std::vector<LineTask *> own;
        for (LineTask &task : tasks) {
            if (block.holds(task.line().box)) {
                own.push_back(&task);
            }
        }
        const QString model = own.empty() || goesOnAside(block, tasks)
                                  ? QString()
                                  : gridModel(own, languages, engines, workers);
        if (model.isEmpty()) {
            continue;
        }
        const bool hasCode = languages.has(english) && engines.has(code);
        if ((model != english || !hasCode) && !readRows(block, page, model, engines, workers)) {
            continue;
        }
        if (hasCode && std::ranges::none_of(block.rows, isForeign) &&
            !readRows(block, page, code, engines, workers)) {
            continue;
        }
        const auto unread = std::ranges::count_if(block.rows, &GridText::isUnread);
        if (block.rows.empty() || double(unread) > mostUnread * double(block.rows.size())) {
            continue;
        }
        std::erase_if(tasks, [&block](const LineTask &task) {
            const Box &box = task.line().box;
            const GridText *row = block.holds(box) ? block.rowOf(box) : nullptr;
            return block.holds(box) && (!row || !row->isDoubtful);
        });
        blocks.push_back(std::move(block));
    }
}

} // namespace

bool hasForeignLetters(const QString &text)
{
    return std::ranges::any_of(text, [](QChar c) { return c.isLetter() && c.unicode() > 127; });
}

GridText *GridBlock::rowOf(const Box &box)
{
    for (GridText &text : rows) {
        if (holds(text.row, box)) {
            return &text;
        }
    }
    return nullptr;
}

std::vector<GridBlock> readGrids(const GreyImage &page, std::vector<LineTask> &tasks,
                                 const Languages &languages, EngineCache &engines, Workers &workers)
{
    std::vector<const TextLine *> lines;
    for (const LineTask &task : tasks) {
        lines.push_back(&task.line());
    }
    std::vector<GridBlock> blocks;
    try {
        const std::vector<Grid> grids = findGrids(page, lines);
        beginReading();
        addGrids(blocks, grids, page, tasks, languages, engines, workers);
    } catch (const Spent &) {
        // The blocks that were read stand.
    }
    return blocks;
}

} // namespace recognition
