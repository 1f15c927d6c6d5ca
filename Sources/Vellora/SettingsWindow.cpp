// SPDX-License-Identifier: MIT
#include "SettingsWindow.h"

#include "AccessibleScrollArea.h"
#include "AppIcon.h"
#include "MissingStatusItem.h"
#include "Platform/Platform.h"
#include "Settings.h"
#include "SettingsView.h"

#include <QApplication>
#include <QEvent>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString frameKey = u"settingsWindowFrame"_s;
// In points, without the title bar. The form inside asks for more than the window's minimum: it
// is scrolled in a window that is smaller.
constexpr QSize contentSize(380, 420);
constexpr QSize minimumSize(320, 220);
// Window systems place windows no further away and make them no larger, in points.
constexpr double furthest = 16000;
constexpr double largest = 10000;

/// Keeps the window, which is not destroyed when it is closed, until the next one replaces it.
std::unique_ptr<QWidget> &slot()
{
    // Never destroyed by an exit handler, because the display may be gone by then.
    static auto *window = new std::unique_ptr<QWidget>;
    return *window;
}

/// No widget may outlive the application object.
void emptySlot()
{
    slot().reset();
}

/// Where a frame of any size stands in the middle of what panels leave of the main screen; empty
/// without a screen.
PopupPlacement::Origin middle()
{
    const Platform &platform = Platform::current();
    const auto screen = platform.screens->mainScreen();
    if (!screen) {
        return {};
    }
    return [visible = platform.popupPlacement->visibleFrame(*screen)](CocoaSize size) {
        return CocoaPoint{visible.midX() - size.width / 2, visible.midY() - size.height / 2};
    };
}

CocoaRect withinReach(const CocoaRect &frame)
{
    return {
        {std::clamp(frame.origin.x, -furthest, furthest),
         std::clamp(frame.origin.y, -furthest, furthest)},
        {std::clamp(frame.size.width, 0.0, largest), std::clamp(frame.size.height, 0.0, largest)}};
}
} // namespace

SettingsWindowController &SettingsWindowController::shared()
{
    static SettingsWindowController controller;
    return controller;
}

QWidget *SettingsWindowController::window()
{
    return slot().get();
}

void SettingsWindowController::show(Updater *updater)
{
    PopupPlacement &placement = *Platform::current().popupPlacement;
    if (window() && window()->isVisible()) {
        placement.makeKeyAndOrderFront(*window());
        return;
    }
    auto window = makeWindow(updater);
    shared().restoreFrame(*window);
    placement.makeKeyAndOrderFront(*window);
    static const bool emptiedAtEnd = (qAddPostRoutine(emptySlot), true);
    Q_UNUSED(emptiedAtEnd)
    slot() = std::move(window);
}

std::unique_ptr<QWidget> SettingsWindowController::makeWindow(Updater *updater)
{
    auto window = std::make_unique<QWidget>(
        nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                     Qt::WindowSystemMenuHint | Qt::WindowMaximizeButtonHint |
                     Qt::WindowCloseButtonHint);
    window->setWindowTitle(tr("Vellora Settings"));
    window->setWindowIcon(loadedAppIcon());
    window->setMinimumSize(minimumSize);
    window->resize(contentSize);

    QAccessible::installFactory(accessibleScrollArea);
    auto *hosting = new QScrollArea(window.get());
    hosting->setFrameShape(QFrame::NoFrame);
    hosting->setWidgetResizable(true);
    hosting->setFocusPolicy(Qt::NoFocus);
    hosting->setWidget(new SettingsView(Settings::shared(), updater));
    auto *content = new QVBoxLayout(window.get());
    content->setContentsMargins(0, 0, 0, 0);
    content->addWidget(hosting);

    window->installEventFilter(&shared());
    return window;
}

void SettingsWindowController::restoreFrame(QWidget &window)
{
    const auto text = Platform::current().userDefaults->string(frameKey);
    m_appeared = false;
    m_restoredFrame.reset();
    m_knownFrame.reset();
    if (text) {
        m_restoredFrame = withinReach(rectFromString(*text));
        Platform::current().popupPlacement->setFrame(window, *m_restoredFrame);
    } else if (const auto origin = middle()) {
        Platform::current().popupPlacement->place(window, origin);
    }
}

void SettingsWindowController::windowDidAppear()
{
    const auto wanted = std::exchange(m_restoredFrame, std::nullopt);
    PopupPlacement &placement = *Platform::current().popupPlacement;
    // Not every window manager tells beforehand how wide its borders will be.
    if (wanted && window() && placement.frame(*window()) != *wanted) {
        placement.setFrame(*window(), *wanted);
    }
    if (window()) {
        m_knownFrame = wanted.value_or(placement.frame(*window()));
    }
}

bool SettingsWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowActivate && !m_appeared) {
        m_appeared = true;
        windowDidAppear();
    }
    if (watched == window() &&
        (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Close)) {
        storeUnseenMove();
    }
    // By the user; quitting closes windows too.
    if (event->type() == QEvent::Close && event->spontaneous() && MissingStatusItem::isMissing()) {
        MissingStatusItem::dismiss();
    }
    // Until then the window is moved and sized only by being placed, by us and by the window
    // manager: nothing to be remembered.
    if (m_appeared && watched == window() && window()->isVisible()) {
        if (event->type() == QEvent::Resize) {
            windowDidResize();
        } else if (event->type() == QEvent::Move) {
            windowDidMove();
        }
    }
    return false;
}

void SettingsWindowController::windowDidResize()
{
    storeFrame();
}

void SettingsWindowController::windowDidMove()
{
    storeFrame();
}

void SettingsWindowController::storeFrame()
{
    PopupPlacement &placement = *Platform::current().popupPlacement;
    CocoaRect frame = placement.frame(*window());
    m_knownFrame = frame;
    if (!placement.tellsPlaces()) {
        // The place of another session holds, or the middle of the screen.
        const auto stored = Platform::current().userDefaults->string(frameKey);
        if (stored) {
            frame.origin = rectFromString(*stored).origin;
        } else if (const auto origin = middle()) {
            frame.origin = origin(frame.size);
        }
    }
    Platform::current().userDefaults->setGathered(frameKey, stringFromRect(frame));
}

void SettingsWindowController::storeUnseenMove()
{
    PopupPlacement &placement = *Platform::current().popupPlacement;
    if (!m_appeared || !window()->isVisible() || !placement.tellsPlaces()) {
        return;
    }
    if (m_knownFrame && placement.frame(*window()) != *m_knownFrame) {
        storeFrame();
    }
}
