// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

class QAction;

/// The application's main menu. It is never seen: it gives every window of the program the
/// standard editing keys and the key that quits.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    explicit MainMenu(QObject *parent);

    /// Gives each window its keys when it is first shown.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAction *add(const QString &title);

    /// Quit, Undo, Redo, Cut, Copy, Paste and Select All, in this order.
    QList<QAction *> m_actions;
};
