// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

/// Lets the program start anew from the file that stands at its place now. Main thread only.
class ProgramRestart
{
public:
    virtual ~ProgramRestart() = default;

    /// Whether there is a program to be started. While an update replaces it there is none.
    virtual bool canRestart() const = 0;

    /// Ends the event loop; `main` starts the successor once this run has given back everything
    /// that only one run can have. False, and nothing happens, when there is nothing to start.
    bool restart()
    {
        if (!canRestart()) {
            return false;
        }
        m_requested = true;
        QCoreApplication::quit();
        return true;
    }

    bool isRequested() const { return m_requested; }

    /// Starts the program anew. Called after the platform's end, while there is still an
    /// application object. It may not return; when it does, this run ends as any other.
    virtual void startSuccessor(char *arguments[]) = 0;

private:
    bool m_requested = false;
};
