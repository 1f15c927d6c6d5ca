// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The system log, where a person looks when something did not work. Any thread.
class SystemLog
{
public:
    virtual ~SystemLog() = default;

    /// Writes one line. `format` is read as a format that is given no arguments: "%%" is a
    /// per-cent sign and a directive stands for nothing.
    void log(const QString &format) { write(expanded(format)); }

    /// Writes one line as it stands, such as one with what another program wrote.
    void logVerbatim(const QString &line) { write(line); }

protected:
    virtual void write(const QString &line) = 0;

private:
    static QString expanded(const QString &format);
};
