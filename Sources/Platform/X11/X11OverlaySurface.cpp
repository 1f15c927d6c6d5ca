// SPDX-License-Identifier: MIT
#include "Platform/X11/X11OverlaySurface.h"

#include "Platform/X11/X11RootChange.h"

#include <QBackingStore>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <xcb/shape.h>

#include <algorithm>
#include <utility>

namespace {
/// How long an overlay may be held up by programs that are still painting what the one before had
/// covered.
constexpr std::chrono::milliseconds longestSettling(300);

/// Depth of a window with an alpha channel.
constexpr int alphaDepth = 32;

QScreen *qtScreen(const Screen &screen)
{
    const auto all = QGuiApplication::screens();
    const auto found = std::find_if(all.begin(), all.end(), [&](const QScreen *each) {
        return each->geometry() == screen.geometry;
    });
    return found == all.end() ? QGuiApplication::primaryScreen() : *found;
}

bool hasVisualWithAlpha(const xcb_screen_t &screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        if (depths.data->depth == alphaDepth && depths.data->visuals_len > 0) {
            return true;
        }
    }
    return false;
}

/// Windows beneath keep these pixels until their programs have painted them anew, instead of those
/// of the panel.
void showUndimmed(QWidget &panel, const QImage &picture)
{
    QBackingStore *store = panel.backingStore();
    if (picture.isNull() || !store || !store->window()) {
        return;
    }
    const QRect all = panel.rect();
    store->beginPaint(all);
    {
        QPainter painter(store->paintDevice());
        painter.drawImage(all, picture);
    }
    store->endPaint();
    store->flush(all);
}

xcb_window_t nativeWindow(const QWidget &panel)
{
    return static_cast<xcb_window_t>(panel.winId());
}
} // namespace

X11OverlaySurface::X11OverlaySurface(std::shared_ptr<X11Connection> connection,
                                     std::shared_ptr<X11Overlays> overlays,
                                     std::shared_ptr<X11OverlayKeyboard> keyboard)
    : m_connection(std::move(connection))
    , m_overlays(std::move(overlays))
    , m_keyboard(std::move(keyboard))
    , m_rootImage(*m_connection)
{
}

bool X11OverlaySurface::showsThrough() const
{
    return m_connection->isComposited() && hasVisualWithAlpha(*m_connection->screen());
}

QImage X11OverlaySurface::pictureOf(const Screen &screen)
{
    QImage known = m_overlays->livePicture(screen.pixelGeometry);
    if (!known.isNull()) {
        return known;
    }
    const QRect pixels = screen.pixelGeometry & m_rootImage.bounds();
    QImage picture = m_overlays->isSettled() ? m_rootImage.read(pixels)
                                             : readSettled(*m_connection, m_rootImage, pixels,
                                                           QDeadlineTimer(longestSettling));
    // Now, as it would be copied for each panel that changes it.
    picture.setDevicePixelRatio(screen.scale().width());
    return picture;
}

std::optional<QPixmap> X11OverlaySurface::cover(QWidget &panel, const Screen &screen)
{
    xcb_connection_t *qt = qtXcbConnection();
    if (!qt || !m_connection->isUsable()) {
        return std::nullopt;
    }
    const bool isTranslucent = showsThrough();
    const QImage picture = isTranslucent ? QImage() : pictureOf(screen);

    panel.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
    panel.setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
    panel.setAttribute(Qt::WA_NoSystemBackground);
    panel.setScreen(qtScreen(screen));
    panel.setGeometry(screen.geometry);

    const xcb_window_t window = nativeWindow(panel);
    // Nothing is seen of the window until its first frame is painted.
    const uint32_t transparent = 0;
    if (isTranslucent) {
        xcb_change_window_attributes(qt, window, XCB_CW_BACK_PIXEL, &transparent);
    }
    const uint32_t noShadow = 0;
    xcb_change_property(qt, XCB_PROP_MODE_REPLACE, window, m_connection->atom("_COMPTON_SHADOW"),
                        XCB_ATOM_CARDINAL, 32, 1, &noShadow);
    m_overlays->add(panel, screen.pixelGeometry, picture);

    return picture.isNull() ? QPixmap() : QPixmap::fromImage(picture);
}

void X11OverlaySurface::orderFront(QWidget &panel)
{
    panel.show();
    const X11Overlay *overlay = m_overlays->find(panel);
    if (!overlay) {
        panel.raise();
        return;
    }
    // Qt's geometry is in whole points, which need not fill the last row and column of pixels.
    const QRect &pixels = overlay->pixels;
    const uint32_t place[] = {static_cast<uint32_t>(pixels.x()), static_cast<uint32_t>(pixels.y()),
                              static_cast<uint32_t>(pixels.width()),
                              static_cast<uint32_t>(pixels.height()), XCB_STACK_MODE_ABOVE};
    xcb_configure_window(qtXcbConnection(), overlay->window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                         place);
    xcb_flush(qtXcbConnection());
}

void X11OverlaySurface::makeKey(QWidget &panel)
{
    const X11Overlay *overlay = m_overlays->find(panel);
    if (!overlay) {
        panel.activateWindow();
        return;
    }
    m_keyboard->take(overlay->window);
}

void X11OverlaySurface::orderOut(QWidget &panel)
{
    X11Overlay *overlay = m_overlays->find(panel);
    if (!overlay || overlay->isRetired) {
        panel.hide();
        return;
    }
    if (!panel.windowHandle() || !panel.windowHandle()->handle()) {
        // A program that quits has closed its windows already.
        m_overlays->remove(panel);
        return;
    }
    overlay->isRetired = true;
    m_overlays->unsettle();
    const xcb_window_t window = overlay->window;
    const bool isTranslucent = overlay->picture.isNull() && m_connection->isComposited();
    if (isTranslucent) {
        // From here on Qt paints nothing into the window any more.
        panel.setUpdatesEnabled(false);
        xcb_connection_t *qt = qtXcbConnection();
        xcb_clear_area(qt, false, window, 0, 0, 0, 0);
        xcb_shape_rectangles(qt, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                             window, 0, 0, 0, nullptr);
    }
    m_keyboard->handOver(window);
    if (!isTranslucent) {
        showUndimmed(panel, overlay->picture);
        panel.hide();
    }
    xcb_flush(qtXcbConnection());
    QTimer::singleShot(0, &panel, [&panel, overlays = m_overlays] {
        panel.hide();
        overlays->remove(panel);
    });
}
