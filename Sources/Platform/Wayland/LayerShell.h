// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QSize>

#include <memory>

class QScreen;
class QWidget;
struct wl_event_queue;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

/// A window of Qt's in the role of a layer that covers a whole output; destroying it takes the
/// role, and so the window, off the screen. It must go before the window is hidden or destroyed;
/// when the window is closed, the role goes by itself.
class LayerSurface : public QObject
{
public:
    /// Called by `LayerShell` alone.
    LayerSurface(zwlr_layer_surface_v1 *role, QWidget &window);
    ~LayerSurface() override;
    LayerSurface(const LayerSurface &) = delete;
    LayerSurface &operator=(const LayerSurface &) = delete;

    bool eventFilter(QObject *window, QEvent *event) override;

    /// The size that the compositor gave, in points; empty until it did.
    QSize size() const { return m_size; }

private:
    friend class LayerShell;
    void configure(quint32 serial, QSize size);
    void dropRole();

    /// Null once it is dropped.
    zwlr_layer_surface_v1 *m_role;
    QPointer<QWidget> m_window;
    QSize m_size;
};

/// zwlr_layer_shell_v1 on Qt's own connection, because the surfaces are Qt's. Main thread only.
class LayerShell
{
public:
    LayerShell();
    ~LayerShell();
    LayerShell(const LayerShell &) = delete;
    LayerShell &operator=(const LayerShell &) = delete;

    /// Whether the compositor offers it and Qt can leave a window without a role for it:
    /// `leaveQtWindowsWithoutRole` was called in time.
    bool isUsable() const;

    /// Gives `window`, which has the flag `BypassWindowManagerHint` and is not shown yet, a layer
    /// above everything on `screen` that takes the keyboard at once. Returns when the compositor
    /// has told the size; the window has it then. Null when it did not.
    std::unique_ptr<LayerSurface> cover(QWidget &window, QScreen &screen);

    /// Waits until the compositor has handled everything that was requested on Qt's connection.
    void roundtrip();

private:
    wl_event_queue *m_queue = nullptr;
    zwlr_layer_shell_v1 *m_shell = nullptr;
};
