// SPDX-License-Identifier: MIT
#include "ResultPopup.h"

#include "LocalKeyMonitor.h"
#include "Platform/Platform.h"
#include "ResultPanel.h"

#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QWindow>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QString sizeKey = u"resultPopupSize"_s;
constexpr CocoaSize defaultSize{360, 240};
constexpr CocoaRect visibleFrameWithoutScreens{{0, 0}, {800, 600}};
/// Between the capture and the popup that hangs below it, in points.
constexpr double gap = 8;

/// As wide and as high as all screens together. A damaged stored size beyond it would ask for
/// more memory than there is.
CocoaSize largestSize()
{
    CocoaSize largest = visibleFrameWithoutScreens.size;
    for (const Screen &screen : Platform::current().screens->screens()) {
        largest.width += screen.frame.size.width;
        largest.height += screen.frame.size.height;
    }
    return largest;
}

CocoaSize contentSize()
{
    const auto text = Platform::current().userDefaults->string(sizeKey);
    const CocoaSize stored = sizeFromString(text.value_or(QString()));
    if (!(stored.width > 0) || !(stored.height > 0)) {
        return defaultSize;
    }
    const CocoaSize largest = largestSize();
    return {std::min(stored.width, largest.width), std::min(stored.height, largest.height)};
}

/// The screen is not chosen by the capture.
CocoaRect visibleFrame()
{
    const Screens &screens = *Platform::current().screens;
    const PopupPlacement &placement = *Platform::current().popupPlacement;
    if (const auto main = screens.mainScreen()) {
        return placement.visibleFrame(*main);
    }
    const QList<Screen> all = screens.screens();
    return all.isEmpty() ? visibleFrameWithoutScreens : placement.visibleFrame(all.first());
}

/// From the middle of the capture to the right and 8 points below it, pulled back onto the
/// screen at its right, left and lower edge, in this order. Never above the capture.
CocoaPoint popupOrigin(CocoaSize size, const CocoaRect &near, const CocoaRect &visible)
{
    return {std::max(std::min(near.midX(), visible.maxX() - size.width), visible.minX()),
            std::max(near.minY() - size.height - gap, visible.minY())};
}
} // namespace

void ResultPopup::DeleteLater::operator()(ResultPanel *closing) const
{
    // It may be handling the very event that ends it.
    closing->deleteLater();
}

ResultPopup::ResultPopup() = default;
ResultPopup::~ResultPopup() = default;

void ResultPopup::show(const QString &text, const CocoaRect &near)
{
    removeDismissMonitors();
    orderOut();

    const CocoaSize size = contentSize();
    std::unique_ptr<ResultPanel, DeleteLater> shown(
        new ResultPanel(text, QSizeF(size.width, size.height)));
    connect(&shown->button(), &QPushButton::clicked, this, &ResultPopup::copyText);
    shown->windowDidResize = [self = QPointer(this)] {
        if (self) {
            self->windowDidResize();
        }
    };

    PopupPlacement &placement = *Platform::current().popupPlacement;
    placement.makeFloating(*shown);
    placement.place(*shown, [near, visible = visibleFrame()](CocoaSize outer) {
        return popupOrigin(outer, near, visible);
    });
    placement.makeKeyAndOrderFront(*shown);
    // Only now, so that showing the window does not count as the user resizing it.
    panel = std::move(shown);
    installDismissMonitors();
}

void ResultPopup::installDismissMonitors()
{
    outsideClickMonitor = Platform::current().eventMonitor->addGlobalMouseDownMonitor(
        [self = QPointer(this)](CocoaPoint mouseLocation) {
            if (self && self->panel &&
                !Platform::current().popupPlacement->frame(*self->panel).contains(mouseLocation)) {
                self->dismiss();
            }
        });
    escMonitor = std::make_unique<LocalKeyMonitor>(
        [self = QPointer(this)](const QKeyEvent &event, const QWindow &window) {
            if (event.key() != Qt::Key_Escape || !self || !self->panel ||
                self->panel->windowHandle() != &window) {
                return false;
            }
            self->dismiss();
            return true;
        });
}

void ResultPopup::removeDismissMonitors()
{
    outsideClickMonitor.reset();
    escMonitor.reset();
}

void ResultPopup::dismiss()
{
    removeDismissMonitors();
    orderOut();
}

void ResultPopup::orderOut()
{
    if (panel) {
        panel->hide();
        panel.reset();
    }
}

void ResultPopup::copyText()
{
    if (!panel) {
        return;
    }
    Pasteboard &pasteboard = *Platform::current().pasteboard;
    pasteboard.clearContents();
    pasteboard.setString(panel->recognizedText());

    panel->button().setText(ResultPanel::tr("Copied!"));
    Platform::current().mainQueue->asyncAfter(1000ms, [button = QPointer(&panel->button())] {
        if (button) {
            button->setText(ResultPanel::tr("Copy"));
        }
    });
}

void ResultPopup::windowDidResize()
{
    // The frame's size, though `show` takes it for the content's: each resize by the user makes
    // the next popup taller by the title bar.
    if (panel) {
        Platform::current().userDefaults->setGathered(
            sizeKey, stringFromSize(Platform::current().popupPlacement->frameSize(*panel)));
    }
}
