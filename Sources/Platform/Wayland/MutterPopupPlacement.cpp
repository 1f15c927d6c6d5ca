// SPDX-License-Identifier: MIT
#include "Platform/Wayland/MutterPopupPlacement.h"

#include "Platform/Wayland/DialogParent.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <utility>

namespace {
/// When a popup that is not given the keyboard has long been put at its place.
constexpr std::chrono::seconds patience(2);

/// Of a screen's width or height: bars and docks that a person works with take less.
constexpr double mostTaken = 0.25;

/// Where the free part of a screen begins, in points from its upper left corner. The compositor
/// tells only its size: the shell's own bar is above, and a dock beside it usually on the left.
/// Absent for a size that this screen cannot have, as the compositor may have taken another one.
std::optional<QPointF> freeOrigin(const Screen &screen, QSize freeSize)
{
    const QSizeF taken = QSizeF(screen.frame.size.width, screen.frame.size.height) - freeSize;
    const QSizeF most(screen.frame.size.width * mostTaken, screen.frame.size.height * mostTaken);
    if (freeSize.isEmpty() || taken.width() < 0 || taken.height() < 0 ||
        taken.width() > most.width() || taken.height() > most.height()) {
        return std::nullopt;
    }
    return QPointF(taken.width(), taken.height());
}
} // namespace

MutterPopupPlacement::MutterPopupPlacement(const Screens &screens, AttachesDialogs attachesDialogs)
    : ToplevelPopupPlacement(screens)
    , m_screens(screens)
    , m_attachesDialogs(std::move(attachesDialogs))
{
    const auto letGo = [this] {
        m_parent.reset();
    };
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, letGo);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this, letGo](QWindow *focused) {
        // It has the keyboard because it is on the screen.
        if (focused && m_floating && focused == m_floating->windowHandle()) {
            letGo();
        }
    });
}

MutterPopupPlacement::~MutterPopupPlacement() = default;

bool MutterPopupPlacement::isUsable()
{
    return DialogParent::isOffered();
}

void MutterPopupPlacement::makeFloating(QWidget &window)
{
    ToplevelPopupPlacement::makeFloating(window);
    m_floating = &window;
    m_origin = nullptr;
}

CocoaRect MutterPopupPlacement::visibleFrame(const Screen &screen) const
{
    const QSize size = DialogParent().freeSize();
    const auto origin = freeOrigin(screen, size);
    if (!origin) {
        return screen.visibleFrame;
    }
    return {{screen.frame.minX() + origin->x(), screen.frame.minY()},
            {double(size.width()), double(size.height())}};
}

void MutterPopupPlacement::place(QWidget &window, const Origin &origin)
{
    if (m_floating == &window) {
        m_origin = origin;
    }
}

void MutterPopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    place(window, [origin](CocoaSize) { return origin; });
}

void MutterPopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    const auto screen = m_screens.mainScreen();
    if (window.isVisible() || m_floating != &window || !m_origin || !screen) {
        ToplevelPopupPlacement::makeKeyAndOrderFront(window);
        return;
    }
    auto parent = std::make_unique<DialogParent>();
    const auto origin = freeOrigin(*screen, parent->freeSize());
    // From now on the frame's borders are known. It is painted by the event loop.
    ToplevelPopupPlacement::makeKeyAndOrderFront(window);
    if (!origin) {
        return;
    }
    const CocoaSize size = frameSize(window);
    const CocoaPoint corner = m_origin(size);
    const QPointF fromFree =
        QPointF(corner.x - screen->frame.minX(), screen->frame.maxY() - corner.y - size.height) -
        *origin;
    if (fromFree.x() < 0 || fromFree.y() < 0) {
        return;
    }
    const double shareBelow = m_attachesDialogs() ? 2 : 3;
    parent->adopt(
        *window.windowHandle(),
        QSizeF(2 * fromFree.x() + size.width, shareBelow * fromFree.y() + size.height).toSize());
    m_parent = std::move(parent);
    m_patience.start();
}
