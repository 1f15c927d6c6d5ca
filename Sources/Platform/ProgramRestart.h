// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

/// Lets the program start anew from the file that stands at its place now. Main thread only.
class ProgramRestart
{
public:
    virtual ~ProgramRestart() = default;

    /// Whether there is a program to be started. While an update replaces it there is none.
    virtual bool canRestart() const = 0;

    /// Ends the event loop; `main` starts the successor once this run has given back everything
    /// that only one run can have. False, and nothing happens, when there is nothing to start.
    ///
    /// `clipboardText` is what this run holds for other programs to paste, which would go with it.
    bool restart(const std::optional<QString> &clipboardText = std::nullopt)
    {
        if (!canRestart()) {
            return false;
        }
        m_requested = true;
        m_clipboardText = clipboardText;
        QCoreApplication::quit();
        return true;
    }

    bool isRequested() const { return m_requested; }

    /// Starts the program anew. Called after the platform's end, while there is still an
    /// application object. It may not return; when it does, this run ends as any other.
    virtual void startSuccessor(char *arguments[]) = 0;

    /// Whether this run is one that another has started in its place.
    virtual bool isSuccessor() const { return false; }

    /// What such a run was handed over for the clipboard; once.
    virtual std::optional<QString> takeClipboardText() { return std::nullopt; }

protected:
    const std::optional<QString> &clipboardText() const { return m_clipboardText; }

private:
    bool m_requested = false;
    std::optional<QString> m_clipboardText;
};
