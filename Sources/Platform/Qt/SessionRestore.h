// SPDX-License-Identifier: MIT
#pragma once

/// Tells the session's manager, if there is one, not to start the program again when it restores
/// the session: whether it starts at login is the login item's matter. Needs the application
/// object.
void stayOutOfRestoredSessions();
