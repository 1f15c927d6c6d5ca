// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QLineEdit>
#include <QString>

#include <functional>
#include <memory>

/// Shows a shortcut; clicked, it takes the next key press with a modifier as the new one.
///
/// Space stands for the click, for people without a mouse. Escape gives up recording; nothing
/// else ends it but a shortcut, not even another control taking the keyboard.
class HotkeyRecorderField : public QLineEdit
{
    Q_OBJECT

public:
    explicit HotkeyRecorderField(QWidget *parent = nullptr);

    /// The shortcut in its stored form. A change is shown by `updateDisplay`.
    QString hotkeyString;
    /// Called with each shortcut that was recorded.
    std::function<void(const QString &)> onChange;

    bool isRecording() const { return m_recording; }

    /// Shows the shortcut, or asks for one while recording.
    void updateDisplay();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *) override {}
    void mouseMoveEvent(QMouseEvent *) override {}
    void mouseDoubleClickEvent(QMouseEvent *event) override { mousePressEvent(event); }

private:
    void startRecording();
    void keyDown(const QKeyEvent &event);
    void stopRecording();
    /// The shortcut in the words on the keys, and what the layout in use prints on its key, where
    /// the shortcut does not say so. Empty while recording.
    QString hint() const;

    /// While it records and has the keyboard, the desktop's own shortcuts are keys like others.
    void updateInhibitor();

    bool m_recording = false;
    std::unique_ptr<KeyTap::Inhibitor> m_inhibitor;
};

/// Puts a recorder field into a form and ties it to a shortcut that is kept elsewhere.
struct HotkeyRecorderView
{
    /// Reads and writes the shortcut.
    std::function<QString()> hotkeyString;
    std::function<void(const QString &)> setHotkeyString;

    HotkeyRecorderField *makeView(QWidget *parent) const;
    /// Shows the shortcut as it is now; a recording goes on.
    void updateView(HotkeyRecorderField &field) const;
};
