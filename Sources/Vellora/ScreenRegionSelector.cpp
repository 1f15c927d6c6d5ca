// SPDX-License-Identifier: MIT
#include "ScreenRegionSelector.h"

#include "Platform/Platform.h"
#include "SelectorView.h"

#include <QCoreApplication>

#include <chrono>
#include <new>
#include <utility>

using namespace std::chrono_literals;

void ScreenRegionSelector::show(Completion callback)
{
    completion = std::move(callback);
    const QList<Screen> screens = Platform::current().screens->screens();
    if (screens.isEmpty()) {
        finish(std::nullopt);
        return;
    }
    OverlaySurface &surface = *Platform::current().overlaySurface;
    for (const Screen &screen : screens) {
        PanelPointer made = makePanel(screen);
        if (!made) {
            if (onFailure) {
                onFailure();
            }
            finish(std::nullopt);
            return;
        }
        panels.push_back(std::move(made));
        OverlayPanel &panel = *panels.back();
        surface.orderFront(panel);
        // The panel of the last screen ends up with the keyboard.
        surface.makeKey(panel);
        panel.contentView().setFocus();
    }
    observe();
}

ScreenRegionSelector::PanelPointer ScreenRegionSelector::makePanel(const Screen &screen)
{
    PanelPointer panel(new OverlayPanel);
    const auto backdrop = Platform::current().overlaySurface->cover(*panel, screen);
    if (!backdrop) {
        return nullptr;
    }
    panel->setBackdrop(*backdrop);

    panel->onPaintFailure = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->memoryDidEnd();
        }
    };
    SelectorView &view = panel->contentView();
    view.screenOriginInGlobalCocoa = screen.frame.origin;
    view.onSelection = [weak = weak_from_this()](const CocoaRect &rect) {
        if (const auto self = weak.lock()) {
            self->finish(rect);
        }
    };
    view.onCancel = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->finish(std::nullopt);
        }
    };
    return panel;
}

void ScreenRegionSelector::memoryDidEnd()
{
    // Each panel tells, as often as it is painted.
    const bool isFirst = !finished;
    // Before anything else that may need memory.
    finish(std::nullopt);
    if (isFirst && onMemoryEnd) {
        onMemoryEnd();
    }
}

void ScreenRegionSelector::observe()
{
    const auto cancel = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->finish(std::nullopt);
        }
    };
    deactivationObserver = Platform::current().eventMonitor->addResignActiveObserver(cancel);
    m_observations = std::make_unique<QObject>();
    // The panels would no longer cover what the user sees.
    QObject::connect(Platform::current().screens.get(), &Screens::changed, m_observations.get(),
                     cancel);
    // A program that quits runs no delayed tasks any more, also not the one that ends `retainSelf`.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, m_observations.get(),
                     [weak = weak_from_this()] {
                         if (const auto self = weak.lock()) {
                             self->finish(std::nullopt);
                             self->retainSelf.reset();
                         }
                     });
}

void ScreenRegionSelector::finish(const std::optional<CocoaRect> &rect)
{
    if (std::exchange(finished, true)) {
        return;
    }
    const Completion callback = std::exchange(completion, nullptr);
    deactivationObserver.reset();
    for (const PanelPointer &panel : panels) {
        Platform::current().overlaySurface->orderOut(*panel);
    }
    panels.clear();
    // Before the completion, which may meet the end of memory.
    try {
        Platform::current().mainQueue->asyncAfter(100ms, [weak = weak_from_this()] {
            if (const auto self = weak.lock()) {
                self->retainSelf.reset();
            }
        });
    } catch (const std::bad_alloc &) {
        // At once, then. Who called holds it meanwhile.
        retainSelf.reset();
    }
    if (callback) {
        callback(rect);
    }
}
