// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Quits the application in order when the session or a terminal ends it (SIGTERM, SIGINT,
/// SIGHUP), so that what it holds on the desktop is given back. What ends at the other side of a
/// socket ends nothing here (SIGPIPE). One per process.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
};
