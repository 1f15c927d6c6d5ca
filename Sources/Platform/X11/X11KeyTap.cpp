// SPDX-License-Identifier: MIT
#include "Platform/X11/X11KeyTap.h"

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11KeyGrab.h"
#include "Platform/X11/X11Keyboard.h"

#include <QKeyEvent>
#include <QPointer>
#include <QWindow>

namespace {
constexpr quint16 escapeKeyCode = 53;

/// Holds the whole keyboard: no passive grab, of ours or of others, is a match meanwhile.
struct KeyboardHold : KeyTap::Inhibitor
{
    explicit KeyboardHold(QWindow &holder)
        : window(&holder)
    {
    }
    ~KeyboardHold() override
    {
        if (window) {
            window->setKeyboardGrabEnabled(false);
        }
    }

    QPointer<QWindow> window;
};
} // namespace

std::unique_ptr<KeyTap::Tap> X11KeyTap::createTap(const KeyCombination &combination,
                                                  Callback callback)
{
    auto grab = std::make_unique<X11KeyGrab>(std::move(callback));
    if (!grab->setCombination(combination)) {
        return nullptr;
    }
    return grab;
}

std::optional<KeyCombination> X11KeyTap::combination(const QKeyEvent &event) const
{
    const X11Connection connection;
    if (!connection.isUsable()) {
        return std::nullopt;
    }
    // On X11 Qt's scan code is the server's key code.
    auto keyCode = X11Keyboard(connection.xcb()).virtualKeyCode(event.nativeScanCode());
    if (event.key() == Qt::Key_Escape) {
        // Wherever the user has put it.
        keyCode = escapeKeyCode;
    }
    if (!keyCode) {
        return std::nullopt;
    }
    KeyCombination combination{*keyCode, 0};
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    if (modifiers & Qt::ShiftModifier) {
        combination.flags |= KeyFlags::shift;
    }
    if (modifiers & Qt::ControlModifier) {
        combination.flags |= KeyFlags::control;
    }
    if (modifiers & Qt::AltModifier) {
        combination.flags |= KeyFlags::option;
    }
    if (modifiers & Qt::MetaModifier) {
        combination.flags |= KeyFlags::command;
    }
    return combination;
}

QString X11KeyTap::keyLabel(quint16 keyCode) const
{
    const X11Connection connection;
    return connection.isUsable() ? X11Keyboard(connection.xcb()).label(keyCode) : QString();
}

std::unique_ptr<KeyTap::Inhibitor> X11KeyTap::inhibitShortcuts(QWindow &window)
{
    if (!window.setKeyboardGrabEnabled(true)) {
        return nullptr;
    }
    return std::make_unique<KeyboardHold>(window);
}
