// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramRestart.h"

#include <QString>

/// Starts the newest installed version in a sandbox of its own: this one keeps the files that it
/// was started with for as long as it lives.
class FlatpakRestart : public ProgramRestart
{
public:
    /// `program` is what to start, as found inside the sandbox.
    explicit FlatpakRestart(QString program);

    bool canRestart() const override;
    void startSuccessor(char *arguments[]) override;

private:
    QString m_program;
};
