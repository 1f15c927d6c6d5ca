// SPDX-License-Identifier: MIT
#include "Platform/Qt/PopUpMenu.h"

#include <QAction>
#include <QGuiApplication>
#include <QKeyEvent>
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

/// Lets the key equivalents of a menu's entries work while it is open: Qt knows of them in windows
/// alone.
class KeyEquivalents : public QObject
{
public:
    explicit KeyEquivalents(QMenu *menu)
        : QObject(menu)
        , m_menu(menu)
    {
        menu->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress) {
            return false;
        }
        const QKeySequence pressed(static_cast<QKeyEvent *>(event)->keyCombination());
        for (QAction *action : m_menu->actions()) {
            if (action->isEnabled() && action->shortcut() == pressed) {
                m_menu->close();
                action->trigger();
                return true;
            }
        }
        return false;
    }

private:
    QMenu *m_menu;
};

} // namespace

QMenu *popUpMenu(std::unique_ptr<QMenu> menu, QPoint position)
{
    QMenu *shown = menu.release();
    shown->setAttribute(Qt::WA_DeleteOnClose);
    new KeyEquivalents(shown);
    shown->popup(position);
    if (QGuiApplication::platformName() == "xcb"_L1) {
        grabInput(shown);
    }
    return shown;
}
