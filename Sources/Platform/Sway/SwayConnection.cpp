// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayConnection.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr std::chrono::milliseconds patience(2000);
constexpr char magic[] = {'i', '3', '-', 'i', 'p', 'c'};
/// The magic, then the payload's length and the type, in the machine's own byte order.
constexpr qsizetype headerLength = sizeof magic + 2 * sizeof(quint32);
/// A desktop of thousands of windows is described in less.
constexpr quint32 longestPayload = 64 * 1024 * 1024;

bool isReady(int socket, short event, QDeadlineTimer deadline)
{
    pollfd polled{socket, event, 0};
    for (;;) {
        const int ready = poll(&polled, 1, static_cast<int>(deadline.remainingTime()));
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}
} // namespace

SwayConnection::SwayConnection()
{
    const QByteArray path = qgetenv("SWAYSOCK");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        return;
    }
    std::copy(path.cbegin(), path.cend(), address.sun_path);
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_socket >= 0 &&
        connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        close();
    }
}

SwayConnection::~SwayConnection()
{
    close();
}

void SwayConnection::close()
{
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

QJsonDocument SwayConnection::request(Request request, const QByteArray &payload)
{
    const QDeadlineTimer deadline(patience);
    if (!send(request, payload, deadline)) {
        close();
        return {};
    }
    const auto answer = receive(deadline);
    if (!answer || answer->type != static_cast<quint32>(request)) {
        // A late answer would be taken for the next one.
        close();
        return {};
    }
    return answer->content;
}

bool SwayConnection::run(const QString &command)
{
    const QJsonArray results = request(Request::RunCommand, command.toUtf8()).array();
    return !results.isEmpty() &&
           std::all_of(results.begin(), results.end(), [](const QJsonValue &result) {
               return result.toObject().value("success"_L1).toBool();
           });
}

bool SwayConnection::send(Request request, const QByteArray &payload, QDeadlineTimer deadline) const
{
    if (!isUsable()) {
        return false;
    }
    QByteArray message(magic, sizeof magic);
    const quint32 numbers[] = {static_cast<quint32>(payload.size()), static_cast<quint32>(request)};
    message.append(reinterpret_cast<const char *>(numbers), sizeof numbers);
    message.append(payload);
    qsizetype sent = 0;
    while (sent < message.size()) {
        const ssize_t count =
            ::send(m_socket, message.constData() + sent,
                   static_cast<std::size_t>(message.size() - sent), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            sent += count;
        } else if (errno != EINTR && (errno != EAGAIN || !isReady(m_socket, POLLOUT, deadline))) {
            return false;
        }
    }
    return true;
}

std::optional<SwayConnection::Message> SwayConnection::receive(QDeadlineTimer deadline)
{
    const auto header = read(headerLength, deadline);
    if (!header || std::memcmp(header->constData(), magic, sizeof magic) != 0) {
        close();
        return std::nullopt;
    }
    quint32 length = 0;
    Message message;
    std::memcpy(&length, header->constData() + sizeof magic, sizeof length);
    std::memcpy(&message.type, header->constData() + sizeof magic + sizeof length,
                sizeof message.type);
    const auto payload = length > longestPayload ? std::nullopt : read(length, deadline);
    if (!payload) {
        close();
        return std::nullopt;
    }
    message.content = QJsonDocument::fromJson(*payload);
    return message;
}

std::optional<QByteArray> SwayConnection::read(qsizetype count, QDeadlineTimer deadline) const
{
    QByteArray data(count, Qt::Uninitialized);
    qsizetype done = 0;
    while (done < count) {
        if (!isUsable() || !isReady(m_socket, POLLIN, deadline)) {
            return std::nullopt;
        }
        const ssize_t received =
            recv(m_socket, data.data() + done, static_cast<std::size_t>(count - done), 0);
        if (received == 0 || (received < 0 && errno != EINTR)) {
            return std::nullopt;
        }
        done += std::max<ssize_t>(received, 0);
    }
    return data;
}
