// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

/// A thread of its own for libcanberra, whose calls wait for the sound server: up to tens of
/// milliseconds, and longer when the server hangs. It holds one open context while it lives.
class SoundWorker
{
public:
    struct Identity
    {
        QByteArray applicationId;
        QByteArray name;
        QByteArray iconName;
    };

    /// Begins to connect to the sound server.
    explicit SoundWorker(const Identity &identity);
    /// Ends the sounds. A thread that still waits for the server is left to itself.
    ~SoundWorker();
    SoundWorker(const SoundWorker &) = delete;
    SoundWorker &operator=(const SoundWorker &) = delete;

    enum class Connection {
        /// The first attempt is still under way.
        Unknown,
        Up,
        Down,
    };

    /// What became of the last attempt to reach the sound server.
    Connection connection() const;

    /// Tries to reach the sound server; the answer tells whether there is a connection.
    std::future<bool> connect();

    /// Starts playing `file`. Should that fail, `onFailure` is called on the worker's thread.
    void play(const QByteArray &file, std::function<void()> onFailure);

private:
    struct State;

    std::shared_ptr<State> m_state;
    std::future<void> m_end;
    std::thread m_thread;
};
