// SPDX-License-Identifier: MIT
#include "Platform/Qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {
/// A screen without area stands in for none being attached.
bool isPlaceholder(const QScreen *screen)
{
    return screen->geometry().isEmpty();
}

CocoaRect flipped(const QRectF &rect, const QRectF &primary)
{
    return {{rect.left() - primary.left(), primary.bottom() - rect.bottom()},
            {rect.width(), rect.height()}};
}
} // namespace

QtScreens::QtScreens(PixelGeometry pixelGeometry)
    : QtScreens(QGuiApplication::platformName() == QLatin1StringView("xcb") ? Origins::Pixels
                                                                            : Origins::Points,
                std::move(pixelGeometry))
{
}

QtScreens::QtScreens(Origins origins, PixelGeometry pixelGeometry)
    : m_origins(origins)
    , m_pixelGeometry(std::move(pixelGeometry))
{
    const auto all = QGuiApplication::screens();
    for (QScreen *screen : all) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        follow(screen);
        Q_EMIT changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](QScreen *screen) {
        forget(screen);
        Q_EMIT changed();
    });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &Screens::changed);
}

void QtScreens::follow(QScreen *screen)
{
    m_numbers.insert(screen, ++m_lastNumber);
    connect(screen, &QScreen::geometryChanged, this, &Screens::changed);
    // A panel that takes room, or letters of another size, leave the screen where it was.
}

void QtScreens::forget(QScreen *screen)
{
    m_numbers.remove(screen);
    screen->disconnect(this);
}

QList<QScreen *> QtScreens::attached() const
{
    QList<QScreen *> all = QGuiApplication::screens();
    all.removeIf([this](const QScreen *screen) {
        return isPlaceholder(screen) || !m_numbers.contains(screen);
    });
    const qsizetype primary = all.indexOf(QGuiApplication::primaryScreen());
    if (primary > 0) {
        all.move(primary, 0);
    }
    return all;
}

QRect QtScreens::pixelsOf(const QScreen &screen) const
{
    if (m_pixelGeometry) {
        const QRect exact = m_pixelGeometry(screen);
        if (!exact.isEmpty()) {
            return exact;
        }
    }
    const double scale = screen.devicePixelRatio();
    const QRect points = screen.geometry();
    const QPointF origin =
        m_origins == Origins::Pixels ? points.topLeft() : points.topLeft() * scale;
    return {origin.toPoint(), (QSizeF(points.size()) * scale).toSize()};
}

/// What Qt's size of a screen is divided by for points.
double QtScreens::pixelsPerUnit(const QScreen &screen) const
{
    const double scale = screen.devicePixelRatio();
    const bool countsPixels =
        scale > 1 && m_pixelGeometry && m_pixelGeometry(screen).size() == screen.size();
    return countsPixels ? scale : 1;
}

/// What origins are divided by so that screens that touch in pixels also touch in points. With
/// screens of different scale no such number exists, and Qt's own places, which never overlap,
/// are kept.
double QtScreens::originScale(const QList<QScreen *> &all) const
{
    if (all.isEmpty() || (m_origins == Origins::Points && pixelsPerUnit(*all.first()) == 1)) {
        return 1;
    }
    const double scale = all.first()->devicePixelRatio();
    const bool uniform = std::all_of(all.begin(), all.end(), [scale](const QScreen *screen) {
        return qFuzzyCompare(screen->devicePixelRatio(), scale);
    });
    return uniform ? scale : 1;
}

QList<Screen> QtScreens::screens() const
{
    const QList<QScreen *> all = attached();
    if (all.isEmpty()) {
        return {};
    }
    const double scale = originScale(all);
    const auto place = [&](const QScreen *screen) {
        const QRectF rect = screen->geometry();
        return QRectF(rect.topLeft() / scale, rect.size() / pixelsPerUnit(*screen));
    };
    const QRectF primary = place(all.first());

    QList<Screen> result;
    result.reserve(all.size());
    for (const QScreen *screen : all) {
        const QRectF whole = place(screen);
        const QRectF available = screen->availableGeometry();
        // Within a screen everything is counted as its size is.
        const double unit = pixelsPerUnit(*screen);
        const QRectF visible(whole.topLeft() +
                                 (available.topLeft() - screen->geometry().topLeft()) / unit,
                             available.size() / unit);
        result.append({flipped(whole, primary), flipped(visible, primary), m_numbers.value(screen),
                       screen->geometry(), pixelsOf(*screen)});
    }
    return result;
}

std::optional<Screen> QtScreens::mainScreen() const
{
    const QWindow *focused = QGuiApplication::focusWindow();
    const QScreen *screen = focused ? focused->screen() : QGuiApplication::screenAt(QCursor::pos());
    const QList<Screen> all = screens();
    if (all.isEmpty()) {
        return std::nullopt;
    }
    const auto found = std::find_if(all.begin(), all.end(), [&](const Screen &each) {
        return screen && each.displayNumber == m_numbers.value(screen);
    });
    return found == all.end() ? all.first() : *found;
}
