// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <chrono>

/// Whether a message bus answers a client's greeting within `limit`; blocks no longer than that.
///
/// libdbus waits without end for a bus that takes connections and never says a word, such as one
/// whose process is stopped. `address` is a list as in $DBUS_SESSION_BUS_ADDRESS; only its first
/// entry with a Unix socket is asked. True where none is, because then there is nothing to tell,
/// and where nothing listens, because then the connection fails by itself and at once.
bool busAnswers(const QByteArray &address, std::chrono::milliseconds limit);

/// Makes the process do without a session bus that does not answer: to be called before anything
/// connects, which is before the application object is made. Returns whether it was left as it is.
bool leaveSilentSessionBus();
