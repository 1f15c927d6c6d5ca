// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QJsonDocument>

#include <optional>

/// A connection to the socket that $SWAYSOCK names. It speaks i3's IPC: see sway-ipc(7). Main
/// thread only.
class SwayConnection
{
public:
    enum class Request : quint32 {
        RunCommand = 0,
        GetWorkspaces = 1,
        Subscribe = 2,
        GetTree = 4,
        GetConfig = 9,
    };

    /// Events have the highest bit set, answers have the number of their request.
    struct Message
    {
        quint32 type = 0;
        QJsonDocument content;
    };

    SwayConnection();
    ~SwayConnection();
    SwayConnection(const SwayConnection &) = delete;
    SwayConnection &operator=(const SwayConnection &) = delete;

    /// Whether there is somebody at the other end, as far as is known.
    bool isUsable() const { return m_socket >= 0; }

    /// For a notifier.
    int socket() const { return m_socket; }

    /// The answer to a request; a null document when there is none in good time (two seconds).
    /// Blocks until then. Not for a connection that has subscribed to events.
    QJsonDocument request(Request request, const QByteArray &payload = {});

    /// Runs a command, such as "workspace 2"; false when sway refused it or did not answer.
    bool run(const QString &command);

    /// The next message, waiting until the deadline at most; the connection ends when what
    /// comes is none.
    std::optional<Message> receive(QDeadlineTimer deadline);

private:
    bool send(Request request, const QByteArray &payload, QDeadlineTimer deadline) const;
    std::optional<QByteArray> read(qsizetype count, QDeadlineTimer deadline) const;
    void close();

    int m_socket = -1;
};
