// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Writes `data` into a pipe that another program reads, as fast as that program reads, from the
/// event loop. It closes the pipe and deletes itself when it is done, or when the other end is
/// closed.
class PipeWriter : public QObject
{
public:
    /// Takes over `pipe`.
    PipeWriter(int pipe, QByteArray data, QObject *parent);
    ~PipeWriter() override;

private:
    void write();

    int m_pipe;
    QByteArray m_data;
    qsizetype m_written = 0;
    QSocketNotifier m_notifier;
};
