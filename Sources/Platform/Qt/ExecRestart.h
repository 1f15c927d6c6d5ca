// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramRestart.h"

#include <QString>

/// Starts the program's file anew in the process that runs already, so that it stays the child,
/// and in the control group and with the application id, that the desktop gave it.
class ExecRestart : public ProgramRestart
{
public:
    /// `executablePath` is absolute: where the program was when it was started.
    explicit ExecRestart(QString executablePath);

    bool canRestart() const override;
    void startSuccessor(char *arguments[]) override;

private:
    QString m_executablePath;
};
