// SPDX-License-Identifier: MIT
#include "Platform/SocketPeer.h"

#include <sys/socket.h>

qint64 processListeningAt(int descriptor)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? peer.pid : 0;
}
