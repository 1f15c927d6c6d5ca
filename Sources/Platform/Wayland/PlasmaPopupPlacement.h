// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/Wayland/WindowActivation.h"

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

struct org_kde_plasma_shell;
struct org_kde_plasma_surface;
struct wl_event_queue;

/// Popups at an exact place by org_kde_plasma_shell, with the desktop's own title bar; a floating
/// one has no entry in the task bar. The compositor tells nobody how high that title bar is, nor
/// where the user moves the window.
class PlasmaPopupPlacement : public PopupPlacement
{
public:
    /// What the shell's own panels leave of the screen of a name, in Qt's global coordinates.
    using AvailableRect = std::function<std::optional<QRect>(const QString &screenName)>;

    /// `screens` outlives the object.
    PlasmaPopupPlacement(const Screens &screens, AvailableRect availableRect);
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
    /// Where it was put last.
    CocoaRect frame(const QWidget &window) const override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    void dropSurface();

    const Screens &m_screens;
    AvailableRect m_availableRect;
    wl_event_queue *m_queue = nullptr;
    org_kde_plasma_shell *m_shell = nullptr;
    /// Of the window shown last.
    org_kde_plasma_surface *m_surface = nullptr;
    QPoint m_topLeft;
    QPointer<QWidget> m_floating;
    WindowActivation m_activation;
};
