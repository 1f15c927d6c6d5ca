// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandSocket.h"

#include "Platform/SocketPeer.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr auto variable = "WAYLAND_DISPLAY";

bool listensAt(const QString &path, qint64 process)
{
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() >= qsizetype(sizeof address.sun_path)) {
        return false;
    }
    std::ranges::copy(name, address.sun_path);
    // One that is too busy to answer at once is not waited for.
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const bool isOf =
        connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
        processListeningAt(connection) == process;
    close(connection);
    return isOf;
}
} // namespace

void nameWaylandDisplayOf(qint64 process)
{
    if (qEnvironmentVariableIsSet(variable)) {
        return;
    }
    QString found;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (process != 0 && !folder.isEmpty()) {
        const QFileInfoList sockets = QDir(folder).entryInfoList({u"wayland-*"_s}, QDir::System);
        const auto of = std::ranges::find_if(sockets, [process](const QFileInfo &each) {
            return listensAt(each.filePath(), process);
        });
        found = of == sockets.end() ? QString() : of->fileName();
    }
    qputenv(variable, QFile::encodeName(found));
}
