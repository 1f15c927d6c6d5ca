// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/BusAnswer.h"

#include <QDeadlineTimer>
#include <QList>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {
/// Long enough for a machine that is just starting a session; a person waits for the icon
/// meanwhile.
constexpr auto answerLimit = 2000ms;

constexpr auto addressVariable = "DBUS_SESSION_BUS_ADDRESS";
/// Where no socket can be, so that every connection is refused at once.
constexpr auto refusingAddress = "unix:path=/dev/null/bus";

struct UnixSocket
{
    sockaddr_un name{};
    socklen_t length = 0;
};

/// What `key` is in "unix:key=value,key=value", with the escapes of the D-Bus specification.
QByteArray valueOf(const QByteArray &entry, const QByteArray &key)
{
    for (const QByteArray &pair : entry.mid(entry.indexOf(':') + 1).split(',')) {
        if (pair.startsWith(key + '=')) {
            return QByteArray::fromPercentEncoding(pair.mid(key.size() + 1));
        }
    }
    return {};
}

std::optional<UnixSocket> socketOf(const QByteArray &address)
{
    for (const QByteArray &entry : address.split(';')) {
        if (!entry.startsWith("unix:")) {
            continue;
        }
        QByteArray name = valueOf(entry, "path");
        if (const QByteArray abstract = valueOf(entry, "abstract"); !abstract.isEmpty()) {
            name = '\0' + abstract;
        } else if (valueOf(entry, "runtime") == "yes") {
            name = qgetenv("XDG_RUNTIME_DIR") + "/bus";
        }
        UnixSocket socket;
        if (name.isEmpty() || name.size() >= qsizetype(sizeof socket.name.sun_path)) {
            continue;
        }
        socket.name.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), socket.name.sun_path);
        socket.length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
        return socket;
    }
    return std::nullopt;
}

class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0) {
            close(m_number);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return m_number; }

private:
    int m_number;
};

bool becomes(short event, int descriptor, const QDeadlineTimer &deadline)
{
    pollfd waiting{.fd = descriptor, .events = event, .revents = 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, int(deadline.remainingTime()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}
} // namespace

bool busAnswers(const QByteArray &address, std::chrono::milliseconds limit)
{
    const auto bus = socketOf(address);
    if (!bus) {
        return true;
    }
    const QDeadlineTimer deadline(limit);
    const Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (connect(connection.number(), reinterpret_cast<const sockaddr *>(&bus->name), bus->length) !=
        0) {
        // A queue that is full belongs to a bus that takes nobody in.
        return errno != EAGAIN;
    }
    // A client's first words (D-Bus specification, "Authentication Protocol"); any answer will do.
    const QByteArray greeting("\0AUTH\r\n", 7);
    if (send(connection.number(), greeting.constData(), size_t(greeting.size()), MSG_NOSIGNAL) !=
        greeting.size()) {
        return true;
    }
    return becomes(POLLIN, connection.number(), deadline);
}

bool leaveSilentSessionBus()
{
    QByteArray address = qgetenv(addressVariable);
    if (!qEnvironmentVariableIsSet(addressVariable)) {
        address = "unix:runtime=yes";
    }
    if (busAnswers(address, answerLimit)) {
        return true;
    }
    qputenv(addressVariable, refusingAddress);
    return false;
}
