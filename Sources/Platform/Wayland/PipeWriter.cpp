// SPDX-License-Identifier: MIT
#include "Platform/Wayland/PipeWriter.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {
/// write() without the signal that a pipe with a closed end would end the program by.
ssize_t writeQuietly(int pipe, const char *data, std::size_t count)
{
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
    const ssize_t written = write(pipe, data, count);
    const int error = errno;
    if (written < 0 && error == EPIPE) {
        const timespec atOnce{};
        sigtimedwait(&brokenPipe, nullptr, &atOnce);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return written;
}
} // namespace

PipeWriter::PipeWriter(int pipe, QByteArray data, QObject *parent)
    : QObject(parent)
    , m_pipe(pipe)
    , m_data(std::move(data))
    , m_notifier(pipe, QSocketNotifier::Write)
{
    fcntl(m_pipe, F_SETFL, fcntl(m_pipe, F_GETFL) | O_NONBLOCK);
    connect(&m_notifier, &QSocketNotifier::activated, this, &PipeWriter::write);
}

PipeWriter::~PipeWriter()
{
    m_notifier.setEnabled(false);
    close(m_pipe);
}

void PipeWriter::write()
{
    while (m_written < m_data.size()) {
        const ssize_t count = writeQuietly(m_pipe, m_data.constData() + m_written,
                                           static_cast<std::size_t>(m_data.size() - m_written));
        if (count < 0 && errno == EAGAIN) {
            return;
        }
        if (count < 0 && errno != EINTR) {
            break;
        }
        m_written += std::max<ssize_t>(count, 0);
    }
    m_notifier.setEnabled(false);
    deleteLater();
}
