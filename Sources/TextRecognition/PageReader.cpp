// SPDX-License-Identifier: MIT
#include "PageReader.h"

#include "Effort.h"
#include "Grain.h"
#include "GridReader.h"
#include "Indentation.h"
#include "LineReader.h"
#include "LineTask.h"
#include "NoiseFilter.h"
#include "OutlinedText.h"
#include "ReadingOrder.h"
#include "Skew.h"
#include "TextRepair.h"
#include "VerticalText.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace recognition {

namespace {

/// The lines of outlined text, in place of what the marks of its letters and of the scenery around
/// them are taken for.
std::vector<TextLine> outlinedLines(const OutlinedText &outlined, std::vector<Mark> &marks)
{
    std::vector<TextLine> lines;
    for (const Box &row : outlined.rows) {
        std::erase_if(marks, [&row](const Mark &mark) {
            return horizontalOverlap(mark.box, row) > 0 && verticalOverlap(mark.box, row) > 0;
        });
        std::vector<Mark> letters = findMarks(cropped(outlined.page, row));
        for (Mark &mark : letters) {
            mark.box = {mark.box.left + row.left, mark.box.top + row.top, mark.box.right + row.left,
                        mark.box.bottom + row.top};
        }
        for (TextLine &line : findLines(letters)) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

/// The lines that may be text, longest first: what is read first decides how the rest is read.
std::vector<LineTask> lineTasks(const GreyImage &page, std::vector<TextLine> lines,
                                Workers &workers)
{
    std::stable_sort(lines.begin(), lines.end(), [](const TextLine &a, const TextLine &b) {
        return a.box.width() * b.box.height() > b.box.width() * a.box.height();
    });
    std::vector<std::unique_ptr<LineTask>> owners(lines.size());
    workers.forEach(lines.size(), [&](std::size_t i) {
        owners[i] = std::make_unique<LineTask>(page, std::move(lines[i]));
    });
    std::vector<LineTask> tasks;
    for (auto &task : owners) {
        if (!task->image().isEmpty()) {
            tasks.push_back(std::move(*task));
        }
    }
    return tasks;
}

/// One row as a line of the result.
PageLine pageLine(const Row &row, const std::vector<LineTask> &tasks)
{
    const LineTask &first = tasks[row.front()];
    PageLine line{first.line().box, {}, first.best.model};
    LineReading best{{}, 1};
    for (const std::size_t i : row) {
        const LineTask &task = tasks[i];
        line.box.unite(task.line().box);
        if (!best.text.isEmpty()) {
            best.text += u'\t';
        }
        best.text += repairedText(task.best, task.script);
        best.confidence = std::min(best.confidence, task.best.confidence() / 100);
    }
    line.readings.append(best);
    if (row.size() > 1) {
        return line;
    }
    QList<Reading> others = tasks[row.front()].others();
    std::sort(others.begin(), others.end(),
              [](const Reading &a, const Reading &b) { return a.confidence() > b.confidence(); });
    for (const Reading &reading : others) {
        const QString text = repairedText(reading, Languages::scriptOf(reading.model));
        const bool known = std::any_of(line.readings.cbegin(), line.readings.cend(),
                                       [&text](const LineReading &r) { return r.text == text; });
        if (!text.isEmpty() && !known) {
            line.readings.append({text, std::min(best.confidence, reading.confidence() / 100)});
        }
    }
    return line;
}

/// Puts the blanks before the lines of source code.
void indent(std::vector<PageLine> &lines)
{
    std::vector<PlacedText> placed;
    placed.reserve(lines.size());
    for (const PageLine &line : lines) {
        placed.push_back({line.box, line.readings.first().text});
    }
    const std::vector<int> blanks = indentations(placed);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (LineReading &reading : lines[i].readings) {
            reading.text.prepend(QString(blanks[i], u' '));
        }
    }
}

/// Puts what was read of lines in doubtful rows of blocks into them where it is in other letters
/// than those of the block's model, and takes the lines out of `tasks`.
void fillDoubtfulRows(std::vector<GridBlock> &blocks, std::vector<LineTask> &tasks)
{
    for (GridBlock &block : blocks) {
        for (GridText &text : block.rows) {
            const auto stands = [&](const LineTask &task) {
                return block.holds(task.line().box) && GridBlock::holds(text.row, task.line().box);
            };
            Row row;
            for (std::size_t i = 0; i < tasks.size(); ++i) {
                if (stands(tasks[i])) {
                    row.push_back(i);
                }
            }
            if (row.empty()) {
                continue;
            }
            std::ranges::sort(row, {}, [&](std::size_t i) { return tasks[i].line().box.left; });
            const PageLine line = pageLine(row, tasks);
            if (line.readings.first().confidence < surelyForeign ||
                !hasForeignLetters(line.readings.first().text)) {
                std::erase_if(tasks, stands);
                continue;
            }
            const double column = (line.box.left - block.grid.left) / block.grid.cellWidth;
            text.text =
                QString(std::max(0, int(std::lround(column))), u' ') + line.readings.first().text;
            text.confidence = line.readings.first().confidence;
            std::erase_if(tasks, stands);
        }
    }
}

std::vector<PageLine> linesOf(const GridBlock &block)
{
    std::vector<PageLine> lines;
    for (const GridText &row : block.rows) {
        lines.push_back({{block.grid.box.left, row.row.top, block.grid.box.right, row.row.bottom},
                         {{row.text, row.confidence}},
                         block.model});
    }
    return lines;
}

/// Everything in reading order. A block is read as a whole.
std::vector<PageLine> inOrder(const std::vector<LineTask> &tasks,
                              const std::vector<GridBlock> &blocks)
{
    std::vector<Piece> pieces;
    pieces.reserve(tasks.size() + blocks.size());
    for (const LineTask &task : tasks) {
        pieces.push_back({task.line().box, task.line().letterHeight,
                          countLetters(task.best.text(), Script::Arabic).own > 0});
    }
    for (const GridBlock &block : blocks) {
        pieces.push_back({block.grid.box, int(std::lround(block.grid.cellWidth)), false});
    }
    std::vector<PageLine> result;
    std::vector<PageLine> loose;
    const auto finishLoose = [&] {
        indent(loose);
        std::ranges::move(loose, std::back_inserter(result));
        loose.clear();
    };
    for (const Row &row : readingOrder(pieces)) {
        Row cells;
        for (const std::size_t i : row) {
            if (i < tasks.size()) {
                cells.push_back(i);
                continue;
            }
            if (!cells.empty()) {
                loose.push_back(pageLine(cells, tasks));
                cells.clear();
            }
            finishLoose();
            std::ranges::move(linesOf(blocks[i - tasks.size()]), std::back_inserter(result));
        }
        if (!cells.empty()) {
            loose.push_back(pageLine(cells, tasks));
        }
    }
    finishLoose();
    return result;
}

/// Cuts off what lies beyond the picture. The cells of a block may begin and end a little outside
/// of it, and a page that was turned has margins that are no part of it.
void keepWithin(std::vector<PageLine> &lines, const GreyImage &page)
{
    for (PageLine &line : lines) {
        line.box = {std::max(line.box.left, 0), std::max(line.box.top, 0),
                    std::min(line.box.right, page.width), std::min(line.box.bottom, page.height)};
    }
    std::erase_if(lines, [](const PageLine &line) { return line.box.isEmpty(); });
}

/// Reads a page whose lines lie level.
std::vector<PageLine> readLevel(const GreyImage &page, const Languages &languages,
                                EngineCache &engines, Workers &workers)
{
    std::vector<Mark> marks = findMarks(page);
    dropGrain(marks, page);
    if (marks.empty()) {
        return {};
    }
    if (!languages.models(Script::Japanese).isEmpty() && isVertical(marks)) {
        beginReading();
        std::vector<PageLine> columns = readVertical(page, marks, engines);
        if (!columns.empty()) {
            return columns;
        }
    }
    const OutlinedText outlined = findOutlinedText(page);
    std::vector<TextLine> lines = outlinedLines(outlined, marks);
    for (TextLine &line : findLines(marks)) {
        lines.push_back(std::move(line));
    }
    std::vector<LineTask> tasks =
        lineTasks(outlined.rows.empty() ? page : outlined.page, std::move(lines), workers);
    if (tasks.empty()) {
        return {};
    }
    std::vector<GridBlock> blocks =
        readGrids(outlined.rows.empty() ? page : outlined.page, tasks, languages, engines, workers);
    if (!tasks.empty()) {
        readLines(tasks, languages, engines, workers);
    }
    if (Effort *effort = Effort::current()) {
        effort->liftBudget();
    }
    if (!tasks.empty()) {
        dropCutLines(tasks, page.height);
        dropNoise(tasks);
        dropScenery(tasks, outlined.rows);
    }
    fillDoubtfulRows(blocks, tasks);
    return inOrder(tasks, blocks);
}

} // namespace

std::vector<PageLine> readPage(const GreyImage &page, const Languages &languages,
                               EngineCache &engines, Workers &workers)
{
    if (languages.isEmpty() || isNoise(page)) {
        return {};
    }
    const double slope = slopeOf(page);
    std::vector<PageLine> lines;
    if (slope == 0) {
        lines = readLevel(page, languages, engines, workers);
    } else {
        const Levelling levelling(page.width, page.height, slope);
        lines = readLevel(levelling.apply(page), languages, engines, workers);
        for (PageLine &line : lines) {
            line.box = levelling.onPage(line.box);
        }
    }
    keepWithin(lines, page);
    return lines;
}

} // namespace recognition
