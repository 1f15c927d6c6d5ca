// SPDX-License-Identifier: MIT
#include "FormColors.h"

namespace {
QColor mixed(const QColor &ground, const QColor &ink, double share)
{
    const auto channel = [share](int from, int to) {
        return qRound(from + (to - from) * share);
    };
    return {channel(ground.red(), ink.red()), channel(ground.green(), ink.green()),
            channel(ground.blue(), ink.blue())};
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

QColor ink(const QPalette &palette)
{
    return palette.color(QPalette::WindowText);
}
} // namespace

QColor FormColors::card(const QPalette &palette)
{
    // Light themes have a base lighter than the window; dark ones a darker one, which would look
    // like a hole.
    return isDark(palette) ? mixed(palette.color(QPalette::Window), ink(palette), 0.07)
                           : palette.color(QPalette::Base);
}

QColor FormColors::separator(const QPalette &palette)
{
    return mixed(card(palette), ink(palette), isDark(palette) ? 0.14 : 0.12);
}

QColor FormColors::trough(const QPalette &palette)
{
    return mixed(card(palette), ink(palette), isDark(palette) ? 0.18 : 0.10);
}

// The shares leave a contrast above 4.5 to 1 between black or white text and its ground.
QColor FormColors::secondaryLabel(const QPalette &palette)
{
    return mixed(card(palette), ink(palette), 0.68);
}

QColor FormColors::tertiaryLabel(const QPalette &palette)
{
    return mixed(card(palette), ink(palette), 0.58);
}
