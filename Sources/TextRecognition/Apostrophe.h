// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"

#include <QList>
#include <QString>

#include <optional>

namespace recognition {

/// How far an apostrophe leans: the way from the middle of its upper third to that of its lower
/// third, in its heights, negative to the left. A straight one (') does not, a curled one (’) leans
/// left. `place` is where it stands in a prepared line, with the line's own rows. Nothing if it is
/// too small to tell or touches a letter.
std::optional<double> leanOfApostrophe(const GreyImage &line, const Box &place);

bool isApostrophe(const QString &character);

/// Straight or curled, which models mix up: told by how the apostrophes of a line lean.
class Apostrophes
{
public:
    /// The next of the line.
    void add(std::optional<double> lean) { m_leans.append(lean); }
    /// Puts right those in `words`, in the order in which they were added. One that cannot be told
    /// is like the others of its line, if they agree.
    void settle(QList<QString> &words) const;

private:
    QList<std::optional<double>> m_leans;
};

} // namespace recognition
