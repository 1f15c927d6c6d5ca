// SPDX-License-Identifier: MIT
#pragma once

#include "Box.h"
#include "GreyImage.h"

namespace recognition {

/// How far the lines of text on `page` fall: pixels down for each pixel to the right, at most 0.06
/// (3.4 degrees) either way. 0 where they lie level, and where nothing tells it.
double slopeOf(const GreyImage &page);

/// Turns a page whose lines fall by `slope` until they lie level.
class Levelling
{
public:
    /// `width` and `height` are the page's, in pixels.
    Levelling(int width, int height, double slope);

    /// All of `page`, turned. Around it stands what most of its nearest side shows.
    GreyImage apply(const GreyImage &page) const;

    /// The box, in pixels of the page, that holds one of the level picture. It may reach beyond the
    /// page.
    Box onPage(const Box &level) const;

private:
    struct Point
    {
        double x = 0;
        double y = 0;
    };

    /// Of the level picture, from its corner, as one of the page, from its corner.
    Point onPage(Point level) const;

    int m_width = 0;
    int m_height = 0;
    double m_cosine = 1;
    double m_sine = 0;
    int m_levelWidth = 0;
    int m_levelHeight = 0;
};

} // namespace recognition
