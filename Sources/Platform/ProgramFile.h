// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// The file that the program was started from. Main thread only.
class ProgramFile : public QObject
{
    Q_OBJECT

public:
    /// Whether another program stands at its place than the one that runs. Not while there is none:
    /// an update may be half done.
    virtual bool isReplaced() const = 0;

Q_SIGNALS:
    /// Something happened to the file or beside it.
    void changed();
};
