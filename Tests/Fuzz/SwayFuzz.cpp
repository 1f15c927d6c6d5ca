// SPDX-License-Identifier: MIT
// Whatever is at the other end of sway's socket, and in the file that says what is bound.

#include "FuzzInput.h"
#include "Platform/KeyTap.h"
#include "Platform/Sway/SwayBindingRecord.h"
#include "Platform/Sway/SwayBindings.h"
#include "Platform/Sway/SwayConnection.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
/// More than this does not fit into the socket, and nobody reads at the same time.
constexpr qsizetype mostBytes = 64 * 1024;

/// Listens at a socket of its own, which $SWAYSOCK names from then on.
int listeningSocket()
{
    static const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"sway.sock"_s));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.cbegin(), path.cend(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    require(bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                listen(socket, 1) == 0,
            "there is a socket");
    qputenv("SWAYSOCK", path);
    return socket;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const int listening = listeningSocket();
    const QByteArray bytes = FuzzInput(data, size).rest().left(mostBytes);
    const SwayKey key{KeyFlags::shift | KeyFlags::command, 32, {u"o"_s}};

    SwayConnection connection;
    const int other = accept(listening, nullptr, nullptr);
    require(other >= 0 && send(other, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) ==
                              bytes.size(),
            "the answer is on its way");
    shutdown(other, SHUT_WR);
    const QJsonDocument answer = connection.request(SwayConnection::Request::GetConfig);
    swayConfigBinds(answer.object().value("config"_L1).toString(), key);
    connection.receive(QDeadlineTimer(0));
    close(other);

    swayConfigBinds(QString::fromUtf8(bytes), key);
    if (const auto record = SwayBindingRecord::parsed(bytes, "s")) {
        require((record->flags & ~KeyFlags::mask) == 0, "a record has known modifiers");
        require(SwayBindingRecord::parsed(SwayBindingRecord::text(*record, "s"), "s") == record,
                "a record reads the same again");
    }
    return 0;
}
