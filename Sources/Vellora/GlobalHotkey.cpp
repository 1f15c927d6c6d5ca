// SPDX-License-Identifier: MIT
#include "GlobalHotkey.h"

#include "HotkeyString.h"
#include "Platform/Platform.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
QString takenText()
{
    return QCoreApplication::translate(
        "GlobalHotkey", "This shortcut does not work here: another program or the desktop has it. "
                        "Choose another one.");
}

QString endedText()
{
    return QCoreApplication::translate("GlobalHotkey",
                                       "The desktop no longer listens to this shortcut. Switch it "
                                       "off and on again, or choose another one.");
}
} // namespace

GlobalHotkey::GlobalHotkey(Action theAction)
    : action(std::move(theAction))
{
}

std::shared_ptr<GlobalHotkey> GlobalHotkey::make(Action action)
{
    return std::shared_ptr<GlobalHotkey>(new GlobalHotkey(std::move(action)));
}

const QHash<QString, quint16> &GlobalHotkey::keyMap()
{
    return HotkeyString::keyMap();
}

void GlobalHotkey::configure(const QString &hotkeyString)
{
    setCombination(HotkeyString::parsed(hotkeyString));
}

void GlobalHotkey::setKeyCode(quint16 keyCode)
{
    setCombination({keyCode, combination.flags});
}

void GlobalHotkey::setModifiers(quint64 modifiers)
{
    setCombination({combination.keyCode, modifiers});
}

void GlobalHotkey::setCombination(const KeyCombination &newCombination)
{
    combination = newCombination;
    if (!eventTap) {
        return;
    }
    Platform::current().keyTap->setProblem({});
    if (!eventTap->setCombination(combination)) {
        // The listener keeps running, deaf until it is given a combination that is free.
        tapFailed(takenText());
    }
}

void GlobalHotkey::tapFailed(const QString &problem) const
{
    Platform::current().systemLog->log(
        u"GlobalHotkey: Failed to create event tap — Accessibility permission likely denied"_s);
    Platform::current().keyTap->setProblem(problem);
}

void GlobalHotkey::start()
{
    if (eventTap) {
        return;
    }
    Platform &platform = Platform::current();
    platform.keyTap->setProblem({});
    if (!platform.keyTap->isProcessTrustedWithPrompt()) {
        denyPermission();
        return;
    }
    eventTap = platform.keyTap->createTap(
        combination, [listener = weak_from_this()](const KeyCombination &pressed) {
            const auto self = listener.lock();
            return self && self->handleKeyDown(pressed);
        });
    if (!eventTap) {
        tapFailed(takenText());
        return;
    }
    eventTap->onEnd = [listener = weak_from_this()](KeyTap::Tap::End end) {
        if (const auto self = listener.lock()) {
            self->tapDidEnd(end);
        }
    };
}

void GlobalHotkey::denyPermission() const
{
    Platform::current().systemLog->log(u"GlobalHotkey: Accessibility permission not yet granted"_s);
    if (onPermissionDenied) {
        onPermissionDenied();
    }
}

void GlobalHotkey::tapDidEnd(KeyTap::Tap::End end)
{
    // Destroyed later: it is the one that calls.
    Platform::current().mainQueue->async([ended = std::shared_ptr(std::move(eventTap))] {});
    if (end == KeyTap::Tap::End::Denied) {
        denyPermission();
    } else {
        tapFailed(endedText());
    }
}

void GlobalHotkey::stop()
{
    eventTap.reset();
    Platform::current().keyTap->setProblem({});
}

bool GlobalHotkey::handleKeyDown(const KeyCombination &pressed)
{
    const bool isMatch = pressed.keyCode == combination.keyCode &&
                         (pressed.flags & KeyFlags::mask) == combination.flags;
    if (isMatch) {
        // Later, so that the desktop has its answer at once.
        Platform::current().mainQueue->async([self = shared_from_this()] {
            if (self->action) {
                self->action();
            }
        });
    }
    return isMatch;
}
