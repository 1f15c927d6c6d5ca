// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"

#include <QHash>

#include <functional>

class QScreen;

/// The screens as Qt knows them, on every desktop. Main thread only.
class QtScreens : public Screens
{
    Q_OBJECT

public:
    /// What the top-left corner of a `QScreen::geometry()` is measured in. Its size is always in
    /// points.
    enum class Origins {
        Points, ///< in points, as on Wayland
        Pixels, ///< in the window system's pixels, as on X11 when Qt scales
    };

    /// Tells the exact pixels of a screen; an empty rectangle where it does not know. A dense
    /// screen of which it tells Qt's own size is one that Qt counts in pixels altogether.
    using PixelGeometry = std::function<QRect(const QScreen &)>;

    /// For the platform plugin in use: X11 counts origins in pixels.
    explicit QtScreens(PixelGeometry pixelGeometry = {});
    QtScreens(Origins origins, PixelGeometry pixelGeometry);

    QList<Screen> screens() const override;
    std::optional<Screen> mainScreen() const override;

private:
    void follow(QScreen *screen);
    void forget(QScreen *screen);
    QList<QScreen *> attached() const;
    QRect pixelsOf(const QScreen &screen) const;
    double pixelsPerUnit(const QScreen &screen) const;
    double originScale(const QList<QScreen *> &all) const;

    Origins m_origins;
    PixelGeometry m_pixelGeometry;
    QHash<const QScreen *, quint32> m_numbers;
    quint32 m_lastNumber = 0;
};
