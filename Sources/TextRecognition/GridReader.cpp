// SPDX-License-Identifier: MIT
#include "GridReader.h"

#include "Effort.h"
#include "GridCells.h"
#include "LanguageChooser.h"
#include "Resample.h"
#include "ScriptChooser.h"

#include <algorithm>
#include <cmath>

namespace recognition {

namespace {

/// White above and below the ink of a row, as a share of its height.
constexpr double whiteAround = 0.1;

/// A row whose characters are less certain than this on average, as a logarithm, is not read.
constexpr double leastCertainty = -1.0;

/// Cells of nothing between words that are read with them.
constexpr int widestBlank = 2;

/// Rows that are read at once: the more, the less often weights are fetched.
constexpr std::size_t rowsAtOnce = 4;

/// A block with more doubtful rows than this share of them is no block, or in another script.
constexpr double mostDoubtful = 0.5;

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

    std::vector<GridText> run(Workers &workers)
    {
        std::vector<GridText> rows(m_lines.size());
        const std::size_t groups = (m_lines.size() + rowsAtOnce - 1) / rowsAtOnce;
        workers.forEach(groups, [&](std::size_t group) {
            const std::size_t first = group * rowsAtOnce;
            const std::size_t last = std::min(first + rowsAtOnce, m_lines.size());
            std::vector<CellLine> lines;
            for (std::size_t i = first; i < last; ++i) {
                lines.push_back(cellLine(m_lines[i]));
            }
            const std::vector<DecodedCells> decoded = m_engine->readCells(lines, m_characters);
            for (std::size_t i = first; i < last; ++i) {
                rows[i] = textOf(i, decoded[i - first]);
            }
        });
        return rows;
    }

private:
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

    GridText textOf(std::size_t index, const DecodedCells &decoded) const
    {
        GridText row{m_grid.rows[index], {}, 0, decoded.certainty < leastCertainty};
        row.confidence = std::exp(decoded.certainty);
        const std::vector<int> &columns = m_lines[index].columns;
        for (std::size_t i = 0; i < decoded.scores.size(); ++i) {
            const std::vector<float> &scores = decoded.scores[i];
            const auto best = std::max_element(scores.begin(), scores.end()) - scores.begin();
            row.text.append(QString(columns[i] - row.text.size(), u' '));
            row.text.append(m_characters.text(std::size_t(best)));
        }
        return row;
    }

    const Grid &m_grid;
    const std::vector<GridLine> m_lines;
    const GridRow m_ink;
    const std::shared_ptr<const Engine> m_engine;
    const CellCharacters m_characters;
};

/// The model that the grid is read with; empty if it is in no letters that stand in one cell each.
QString gridModel(const std::vector<LineTask *> &lines, const Languages &languages,
                  EngineCache &engines, Workers &workers)
{
    QStringList candidates;
    for (const Script script : languages.scripts()) {
        candidates.append(languages.models(script).first());
    }
    const QString main = mainModel(lines, candidates, engines, workers);
    switch (Languages::scriptOf(main)) {
    case Script::Latin:
        return latinModel(lines, languages, engines, workers);
    case Script::Cyrillic:
        return main;
    default:
        return {};
    }
}

/// Reads these blocks, and adds those that are text to `blocks`.
void addGrids(std::vector<GridBlock> &blocks, const std::vector<Grid> &grids, const GreyImage &page,
              std::vector<LineTask> &tasks, const Languages &languages, EngineCache &engines,
              Workers &workers)
{
    for (const Grid &grid : grids) {
        GridBlock block{grid, {}, {}};
        std::vector<LineTask *> own;
        for (LineTask &task : tasks) {
            if (block.holds(task.line().box)) {
                own.push_back(&task);
            }
        }
        const QString model = own.empty() ? QString() : gridModel(own, languages, engines, workers);
        const auto engine = model.isEmpty() ? nullptr : engines.engine(model, Dictionary::With);
        if (!engine) {
            continue;
        }
        block.model = model;
        block.rows = GridReader(page, grid, engine).run(workers);
        const auto doubtful = std::ranges::count_if(block.rows, &GridText::isDoubtful);
        if (doubtful > mostDoubtful * double(block.rows.size())) {
            continue;
        }
        std::erase_if(tasks, [&block](const LineTask &task) {
            const Box &box = task.line().box;
            const GridText *row = block.holds(box) ? block.rowOf(box) : nullptr;
            return block.holds(box) && (!row || !row->isDoubtful);
        });
        if (Effort *effort = Effort::current()) {
            effort->foundText();
        }
        blocks.push_back(std::move(block));
    }
}

} // namespace

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
        addGrids(blocks, findGrids(page, lines), page, tasks, languages, engines, workers);
    } catch (const Spent &) {
        // The blocks that were read stand.
    }
    return blocks;
}

} // namespace recognition
