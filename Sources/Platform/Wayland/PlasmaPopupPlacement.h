// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/Wayland/WindowActivation.h"

#include <QRect>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

struct org_kde_plasma_shell;
struct wl_event_queue;
struct wl_surface;

/// Popups at an exact place by org_kde_plasma_shell, with the desktop's own title bar; a floating
/// one has no entry in the task bar. Where the user moves one that does not float is asked for.
class PlasmaPopupPlacement : public PopupPlacement
{
public:
    /// What the shell's own panels leave of the screen of a name, in Qt's global coordinates.
    using AvailableRect = std::function<std::optional<QRect>(const QString &screenName)>;
    /// The frame of the window of ours with this title, in Qt's global coordinates; absent where
    /// it is not told.
    using FrameOfTitle = std::function<std::optional<QRect>(const QString &title)>;

    /// `screens` outlives the object.
    PlasmaPopupPlacement(const Screens &screens, AvailableRect availableRect,
                         FrameOfTitle frameOfTitle);
    ~PlasmaPopupPlacement() override;

    /// Whether the compositor offers what is needed.
    bool isUsable() const { return m_shell != nullptr; }

    void makeFloating(QWidget &window) override;
    /// What Plasma's panels leave, less what other bars take. Where those are is not told: height
    /// is taken from below, width from the right.
    CocoaRect visibleFrame(const Screen &screen) const override;
    /// With a title bar as high as one usually is, or a little higher: a window that is held on
    /// the screen by this has its lower edge on it.
    CocoaSize frameSize(const QWidget &window) const override;
    /// Where the compositor tells that it is, or where it was put last. May wait for that.
    CocoaRect frame(const QWidget &window) const override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    struct Placed;

    /// Made if there is none yet.
    Placed &placed(QWidget &window);
    /// Null for a window that was never placed.
    const Placed *find(const QWidget &window) const;
    void giveSurface(Placed &placed, wl_surface &surface);

    const Screens &m_screens;
    AvailableRect m_availableRect;
    FrameOfTitle m_frameOfTitle;
    wl_event_queue *m_queue = nullptr;
    org_kde_plasma_shell *m_shell = nullptr;
    std::vector<Placed> m_placed;
    WindowActivation m_activation;
};
