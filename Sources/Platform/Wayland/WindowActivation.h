// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QWidget;
class QWindow;

/// Brings a shown window of ours to the front, and out of the task bar, on a compositor that does
/// so only for a token of xdg_activation_v1. The window stays at its place. Main thread only.
///
/// The click or key that asked for the window may have given a token ($XDG_ACTIVATION_TOKEN). Where
/// it has not, or the compositor does not take it, a window of a single point is shown, which gets
/// the keyboard as every new window does, and with that a token for the other.
class WindowActivation : public QObject
{
    Q_OBJECT

public:
    WindowActivation();
    ~WindowActivation() override;

    /// Returns at once. Nothing happens where the compositor gives no new window the keyboard.
    void activate(QWidget &window);

private:
    void follow();
    void askForKeyboard();
    void end();

    /// What is to come to the front; null once it has, or is given up.
    QPointer<QWidget> m_wanted;
    std::unique_ptr<QWindow> m_point;
    QTimer m_patience;
};
