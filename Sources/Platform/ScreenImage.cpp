// SPDX-License-Identifier: MIT
#include "Platform/ScreenImage.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

QScreen *qtScreen(const Screen &screen)
{
    const auto all = QGuiApplication::screens();
    const auto found = std::ranges::find(all, screen.geometry, &QScreen::geometry);
    return found == all.end() ? nullptr : *found;
}

std::optional<Screen> screenOf(const Screens &screens, quint32 display)
{
    const QList<Screen> all = screens.screens();
    const auto found = std::ranges::find(all, std::optional(display), &Screen::displayNumber);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

QScreen *qtScreen(const Screens &screens, quint32 display)
{
    const auto screen = screenOf(screens, display);
    return screen ? qtScreen(*screen) : nullptr;
}

QSizeF sizeOf(const Screen &screen)
{
    return {screen.frame.size.width, screen.frame.size.height};
}

QImage croppedToPoints(const QImage &image, QSizeF size, const QRectF &rect)
{
    if (image.isNull() || size.isEmpty()) {
        return {};
    }
    const double across = image.width() / size.width();
    const double down = image.height() / size.height();
    // Rounding errors of the scale must not add a row: 1/1000 of a pixel is none.
    constexpr double slack = 0.001;
    const int left = static_cast<int>(std::floor(rect.left() * across + slack));
    const int top = static_cast<int>(std::floor(rect.top() * down + slack));
    const int right = static_cast<int>(std::ceil(rect.right() * across - slack));
    const int bottom = static_cast<int>(std::ceil(rect.bottom() * down - slack));
    const QRect pixels = QRect(left, top, right - left, bottom - top) & image.rect();
    if (pixels.isEmpty()) {
        return {};
    }
    return pixels == image.rect() ? image : image.copy(pixels);
}

QImage cutFromDesktop(const QImage &picture, const Screens &screens, const Screen &screen,
                      const QRectF &rect)
{
    const QSizeF size = sizeOf(screen);
    const QRectF within = rect & QRectF(QPointF(0, 0), size);
    if (within.isEmpty()) {
        return {};
    }
    // All screens are told apart in Qt's units, which need not be points.
    QRect whole;
    for (const Screen &each : screens.screens()) {
        whole |= each.geometry;
    }
    const double units = screen.geometry.width() / size.width();
    const QPoint place = screen.geometry.topLeft() - whole.topLeft();
    const QRectF placed(within.topLeft() * units + place, within.size() * units);
    return croppedToPoints(picture, whole.size(), placed);
}
