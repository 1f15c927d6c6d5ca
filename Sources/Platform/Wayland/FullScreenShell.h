// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QScreen;
struct wl_output;
struct wl_surface;
struct xdg_surface;
struct xdg_toplevel;
struct xdg_wm_base;

/// A window of Qt's in the role of a full-screen window of xdg_shell's; destroying it takes the
/// window off the screen. It must go before the window is hidden or destroyed.
class FullScreenWindow : public QObject
{
public:
    /// Called by `FullScreenShell` alone.
    FullScreenWindow(xdg_wm_base *shell, wl_surface *surface, wl_output *output, QWidget &window);
    ~FullScreenWindow() override;

    /// Agrees to what the compositor configured with the picture that is about to be painted.
    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void configure(quint32 serial);
    void dropRole();

    QPointer<QWidget> m_window;
    /// Null once it was dropped.
    xdg_surface *m_role;
    xdg_toplevel *m_toplevel;
    /// Of what was configured last, until it is agreed to.
    std::optional<quint32> m_serial;
};

/// xdg_shell's full-screen windows on Qt's own connection, because the surfaces are Qt's. Main
/// thread only.
///
/// Qt has such windows itself, which take every size that the compositor names. GNOME names a wrong
/// one first on a screen of another scale than the pointer's, where it counts screens in pixels.
/// QtWayland 6.4 may agree to the right one between painting in the old size and showing that; and
/// GNOME 43 keeps the place that it gives to such a picture, beside the screen, for those that
/// follow. These windows have the size of their screen from the first picture to the last.
class FullScreenShell
{
public:
    FullScreenShell();
    ~FullScreenShell();
    FullScreenShell(const FullScreenShell &) = delete;
    FullScreenShell &operator=(const FullScreenShell &) = delete;

    /// Whether Qt runs on a compositor that offers it, and can leave a window without a role for
    /// it: `leaveQtWindowsWithoutRole` was called in time.
    bool isUsable() const;

    /// Makes `window`, which has the flag `BypassWindowManagerHint` and the size of `screen` in
    /// points, cover that. The window is shown when the compositor answers, from the event loop.
    /// Null for a screen that is gone.
    std::unique_ptr<FullScreenWindow> show(QWidget &window, QScreen &screen);

private:
    xdg_wm_base *m_shell = nullptr;
};
