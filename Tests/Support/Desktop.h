// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>

/// What other programs see of the desktop and do on it, for tests that run in one. Everything is
/// in pixels of the whole desktop, origin top-left, y down.

/// The standard output of a finished program; a failed test where it fails.
QString outputOf(const QString &program, const QStringList &arguments);

/// The names and places of all windows, as xwininfo lists them.
QString windowTree();

/// What all screens show, read by another process.
QImage screenshot();

/// What the first screen shows, read by Qt.
QImage seen();

/// What the first screen shows once that is wanted and changes no more; a failed test where it
/// never is.
QImage settled(const std::function<bool(const QImage &)> &isWanted = [](const QImage &) {
    return true;
});

/// The smallest rectangle in which two pictures of one size differ.
QRect difference(const QImage &one, const QImage &other);

/// Whether two pictures have the same size and colours.
bool areAlike(const QImage &one, const QImage &other);

/// Another program with windows of its own; see X11Peer.cpp for its commands.
class Peer
{
public:
    Peer();
    ~Peer();

    /// Shows its window there (client area) and makes it the active one.
    void showWindow(const QRect &place);
    /// Has the window manager move its window, and waits until it has. Not to where it is.
    void move(QPoint place);
    /// Makes its window the active one, as a window switcher does, and waits until keys go there.
    void activate();
    /// Takes the keyboard without asking the window manager, and waits until keys go there.
    void takeKeyboard();
    /// Sends a command and gives the answer's rest, once it has come.
    QString ask(const QString &command);
    /// Whether it has said such a line since it was last asked, waiting for it if need be. One line
    /// counts once.
    bool says(const QString &line);

private:
    void focusBy(const QString &request);
    bool hasKeyboard() const;
    bool awaitLine();

    QProcess m_process;
    QString m_window;
    QStringList m_lines;
};
