// SPDX-License-Identifier: MIT
#pragma once

#include "ReadingOrder.h"

#include <cstddef>
#include <vector>

namespace recognition {

/// An interval of columns.
struct Gap
{
    int left = 0;
    int right = 0;
    int width() const { return right - left; }
};

/// How many pieces stand on one side of a gutter, and what is known of them without looking at
/// each.
struct GutterSide
{
    std::size_t pieces = 0;
    /// Those that are as wide as a band counts as wide.
    std::size_t wide = 0;
    /// Those that stand on one line with one on the other side, at least.
    std::size_t matched = 0;
};

/// The pieces of a page between two rows of pixels, with what many questions for gutters through it
/// need: a gutter is told from the pieces beside it without going over all of them.
class ColumnBand
{
public:
    /// `pieces` must outlive it. From `wide` pixels on a piece counts as wide.
    ColumnBand(const std::vector<Piece> &pieces, std::vector<std::size_t> members, int wide);

    /// From the top.
    const std::vector<std::size_t> &members() const { return m_members; }
    /// The columns where nothing stands, between those where something does.
    std::vector<Gap> gaps() const;
    /// What the band leaves of a gutter: nothing if something crosses it. Lines that fill their
    /// column may reach far into what a short first line left free.
    Gap narrow(Gap gutter) const;
    /// Adds what stands on both sides of `gutter`, which `narrow` left.
    void addSides(const Gap &gutter, GutterSide &left, GutterSide &right) const;

private:
    const Box &box(std::size_t member) const { return m_pieces[member].box; }
    void match();

    const std::vector<Piece> &m_pieces;
    std::vector<std::size_t> m_members;
    /// The members from the left; then for as many of them from the left: the rightmost edge, how
    /// many are wide, and how many of them and of the others stand on a line with one beyond.
    std::vector<std::size_t> m_fromLeft;
    std::vector<int> m_right;
    std::vector<std::size_t> m_wide;
    std::vector<std::size_t> m_matchedLeft;
    std::vector<std::size_t> m_matchedRight;
};

/// Whether two pieces stand on one line, as cells of a row do and the lines of two panes do not.
bool areOnOneLine(const Piece &a, const Piece &b);

/// How far the middles of pieces on one line are apart at most, in half pixels, if the higher
/// letters of the two are so high.
int reachOnOneLine(int letterHeight);

} // namespace recognition
