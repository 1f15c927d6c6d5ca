// SPDX-License-Identifier: MIT
#include "Platform/Qt/PopUpMenu.h"

#include <QGuiApplication>
#include <QMenu>
#include <QTimer>
#include <QWindow>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// How soon after the release of its button a panel lets go of the pointer is not told to anybody.
constexpr std::chrono::milliseconds retryInterval{20};

/// A panel that asks for the menu on a button press still holds the pointer, and Qt does not try
/// again: the menu would be deaf to clicks beside it.
void grabInput(QMenu *menu)
{
    QWindow *window = menu->windowHandle();
    if (!menu->isVisible() || !window ||
        (window->setMouseGrabEnabled(true) && window->setKeyboardGrabEnabled(true))) {
        return;
    }
    QTimer::singleShot(retryInterval, menu, [menu] { grabInput(menu); });
}

} // namespace

QMenu *popUpMenu(std::unique_ptr<QMenu> menu, QPoint position)
{
    QMenu *shown = menu.release();
    shown->setAttribute(Qt::WA_DeleteOnClose);
    shown->popup(position);
    if (QGuiApplication::platformName() == "xcb"_L1) {
        grabInput(shown);
    }
    return shown;
}
