// SPDX-License-Identifier: MIT
#include "MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QKeySequence>
#include <QWidget>

MainMenu::MainMenu(QObject *parent)
    : QObject(parent)
{
    QAction *quit = add(tr("Quit Vellora"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, qApp, &QCoreApplication::quit);

    struct Command
    {
        QString title;
        QKeySequence key;
        /// The operation's name in whichever widget has the focus.
        const char *slot;
    };
    const QList<Command> editing{
        {tr("Undo"), QKeySequence(Qt::CTRL | Qt::Key_Z), "undo"},
        {tr("Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), "redo"},
        {tr("Cut"), QKeySequence(Qt::CTRL | Qt::Key_X), "cut"},
        {tr("Copy"), QKeySequence(Qt::CTRL | Qt::Key_C), "copy"},
        {tr("Paste"), QKeySequence(Qt::CTRL | Qt::Key_V), "paste"},
        {tr("Select All"), QKeySequence(Qt::CTRL | Qt::Key_A), "selectAll"},
    };
    for (const Command &command : editing) {
        QAction *action = add(command.title);
        action->setShortcut(command.key);
        connect(action, &QAction::triggered, this, [slot = command.slot] {
            QWidget *firstResponder = QApplication::focusWidget();
            if (firstResponder &&
                firstResponder->metaObject()->indexOfMethod(
                    QMetaObject::normalizedSignature(QByteArray(slot) + "()")) >= 0) {
                QMetaObject::invokeMethod(firstResponder, slot);
            }
        });
    }
    qApp->installEventFilter(this);
}

QAction *MainMenu::add(const QString &title)
{
    auto *action = new QAction(title, this);
    m_actions << action;
    return action;
}

bool MainMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->isWindow() && widget->windowType() != Qt::Popup &&
            widget->windowType() != Qt::ToolTip) {
            widget->addActions(m_actions);
        }
    }
    return false;
}
