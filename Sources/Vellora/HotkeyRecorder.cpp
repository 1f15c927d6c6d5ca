// SPDX-License-Identifier: MIT
#include "HotkeyRecorder.h"

#include "FormColors.h"
#include "HotkeyString.h"
#include "Platform/Platform.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {
constexpr quint16 escapeKeyCode = 53;
}

HotkeyRecorderField::HotkeyRecorderField(QWidget *parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
    setAlignment(Qt::AlignCenter);
    setContextMenuPolicy(Qt::NoContextMenu);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    setDragEnabled(false);
    setCursor(Qt::ArrowCursor);
    setAccessibleName(tr("Shortcut"));
    // Nothing of it can be selected, also not by the main menu's commands.
    connect(this, &QLineEdit::selectionChanged, this, &QLineEdit::deselect);
    updateDisplay();
}

void HotkeyRecorderField::updateDisplay()
{
    setText(m_recording ? tr("Type shortcut…") : HotkeyString::displayString(hotkeyString));
    QPalette colors = parentWidget() ? parentWidget()->palette() : QPalette();
    if (m_recording) {
        colors.setColor(QPalette::Text, FormColors::secondaryLabel(colors));
    }
    setPalette(colors);
    // Symbols are not read aloud everywhere.
    setAccessibleDescription(m_recording
                                 ? tr("Press the new shortcut, or Escape to keep the old one.")
                                 : tr("%1. Press Space to record another shortcut.")
                                       .arg(HotkeyString::spoken(hotkeyString)));
}

void HotkeyRecorderField::startRecording()
{
    m_recording = true;
    updateDisplay();
    setFocus(Qt::MouseFocusReason);
    updateInhibitor();
}

void HotkeyRecorderField::stopRecording()
{
    m_recording = false;
    updateInhibitor();
    updateDisplay();
}

void HotkeyRecorderField::updateInhibitor()
{
    QWindow *native = window()->windowHandle();
    if (!m_recording || !hasFocus() || !native) {
        m_inhibitor.reset();
    } else if (!m_inhibitor) {
        m_inhibitor = Platform::current().keyTap->inhibitShortcuts(*native);
    }
}

void HotkeyRecorderField::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        startRecording();
    }
}

bool HotkeyRecorderField::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // While recording, no menu and no mnemonic takes a key before us.
        event->setAccepted(m_recording);
        return true;
    case QEvent::KeyPress: {
        const auto &press = static_cast<const QKeyEvent &>(*event);
        const bool leaves = press.key() == Qt::Key_Tab || press.key() == Qt::Key_Backtab;
        if (!m_recording && leaves) {
            break;
        }
        if (!m_recording && press.key() == Qt::Key_Space && press.modifiers() == Qt::NoModifier) {
            if (!press.isAutoRepeat()) {
                startRecording();
            }
        } else {
            keyDown(press);
        }
        event->accept();
        return true;
    }
    case QEvent::KeyRelease:
        return true;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        updateInhibitor();
        break;
    case QEvent::ToolTip:
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), hint(), this);
        return true;
    default:
        break;
    }
    return QLineEdit::event(event);
}

void HotkeyRecorderField::keyDown(const QKeyEvent &event)
{
    if (!m_recording) {
        return;
    }
    const auto pressed = Platform::current().keyTap->combination(event);
    if (!pressed) {
        return;
    }
    if (pressed->keyCode == escapeKeyCode) {
        stopRecording();
        return;
    }
    const auto recorded = HotkeyString::written(*pressed);
    if (!recorded) {
        return;
    }
    hotkeyString = *recorded;
    stopRecording();
    if (onChange) {
        onChange(*recorded);
    }
}

QString HotkeyRecorderField::hint() const
{
    if (m_recording) {
        return {};
    }
    const QString spelled = HotkeyString::spoken(hotkeyString);
    const KeyCombination combination = HotkeyString::parsed(hotkeyString);
    const auto name = HotkeyString::keyName(combination.keyCode);
    const QString label = Platform::current().keyTap->keyLabel(combination.keyCode);
    if (!name || label.isEmpty() || label == name->toUpper()) {
        return spelled;
    }
    // The key's letter is its place on an ANSI keyboard; another letter may be printed there.
    return spelled + u'\n' + tr("On this keyboard, the key with “%1”").arg(label);
}

HotkeyRecorderField *HotkeyRecorderView::makeView(QWidget *parent) const
{
    auto *field = new HotkeyRecorderField(parent);
    field->onChange = setHotkeyString;
    updateView(*field);
    return field;
}

void HotkeyRecorderView::updateView(HotkeyRecorderField &field) const
{
    field.hotkeyString = hotkeyString();
    field.updateDisplay();
}
