// SPDX-License-Identifier: MIT
#include "Platform/X11/X11KeyTap.h"

#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11KeyGrab.h"
#include "Platform/X11/X11Keyboard.h"

#include <QKeyEvent>

namespace {
constexpr quint16 escapeKeyCode = 53;
}

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
