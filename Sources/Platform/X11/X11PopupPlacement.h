// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11WindowManager.h"

#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <memory>

/// Popups are dialogs of the window manager, which every one gives a title bar with a close
/// button and leaves where the program puts them.
class X11PopupPlacement : public PopupPlacement
{
public:
    /// `screens` outlives the object.
    X11PopupPlacement(std::shared_ptr<X11Connection> connection, const Screens &screens);

    void makeFloating(QWidget &window) override;
    /// May block until the window manager has answered, 300 ms at most, once for each one.
    CocoaSize frameSize(const QWidget &window) const override;
    CocoaRect frame(const QWidget &window) const override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    /// Where the client area of a window was to be put, exactly.
    struct Wish
    {
        QPointer<QWidget> window;
        QPoint pixels;
    };

    std::shared_ptr<X11Connection> m_connection;
    const Screens &m_screens;
    std::unique_ptr<X11WindowManager> m_windowManager;
    Wish m_wish;
};
