// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// Says, before and while the desktop asks whether the program may see the screen, what that is
/// for. Desktops show their question only above a window of the program that has the keyboard.
class PermissionWindow : public QWidget
{
    Q_OBJECT

public:
    PermissionWindow();

    /// Says that the desktop asks.
    void showQuestion();
    /// Says that the question came to nothing, and offers to have it asked again. `reason` is a
    /// sentence more, or empty.
    void showUnanswered(const QString &reason);

Q_SIGNALS:
    /// The user wants the question to be asked again.
    void askedAgain();
    /// The user wants none, or has closed the window.
    void dismissed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void setText(const QString &text);

    QString m_promise;
    QLabel *m_text;
    QPushButton *m_again;
};
