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
    ~ExecRestart() override;

    bool canRestart() const override;
    void startSuccessor(char *arguments[]) override;
    bool isSuccessor() const override { return m_isSuccessor; }
    std::optional<QString> takeClipboardText() override;

private:
    /// A file in memory with the clipboard's text, for the successor to inherit; -1 for none.
    int handOver() const;

    QString m_executablePath;
    bool m_isSuccessor = false;
    int m_inherited = -1;
};
