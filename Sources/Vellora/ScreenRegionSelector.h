// SPDX-License-Identifier: MIT
#pragma once

#include "OverlayPanel.h"
#include "Platform/EventMonitor.h"
#include "Platform/Screens.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Dims every screen, lets the user drag one rectangle and reports it, or that there is none,
/// exactly once. Main thread only.
class ScreenRegionSelector : public std::enable_shared_from_this<ScreenRegionSelector>
{
public:
    /// Takes the rectangle in global Cocoa coordinates, or nothing when the user cancelled.
    using Completion = std::function<void(const std::optional<CocoaRect> &)>;

    ScreenRegionSelector() = default;
    ScreenRegionSelector(const ScreenRegionSelector &) = delete;
    ScreenRegionSelector &operator=(const ScreenRegionSelector &) = delete;

    /// Puts the overlays up and returns; without any screen, and where one cannot be covered,
    /// `callback` runs at once.
    void show(Completion callback);

    /// Takes the overlays down and reports `rect`. Only the first call counts.
    void finish(const std::optional<CocoaRect> &rect);

    /// The creator sets it to the selector itself, which so stays alive while it is on screen.
    /// Cleared a moment after `finish`, never inside the completion.
    std::shared_ptr<ScreenRegionSelector> retainSelf;

    /// Called before the completion when a screen could not be covered.
    std::function<void()> onFailure;
    /// Called after the completion when there was no memory to show what covers a screen.
    std::function<void()> onMemoryEnd;

private:
    /// A panel is destroyed only after the event, often its own, that is being handled.
    struct DeleteLater
    {
        void operator()(OverlayPanel *panel) const { panel->deleteLater(); }
    };
    using PanelPointer = std::unique_ptr<OverlayPanel, DeleteLater>;

    /// Null for a screen that cannot be covered.
    PanelPointer makePanel(const Screen &screen);
    void memoryDidEnd();
    void observe();

    /// The overlays on screen, one per screen, in the order of the screens.
    std::vector<PanelPointer> panels;
    Completion completion;
    bool finished = false;
    std::unique_ptr<EventMonitor::Monitor> deactivationObserver;
    /// Context of the connections to the screens and the application; ends them with itself.
    std::unique_ptr<QObject> m_observations;
};
