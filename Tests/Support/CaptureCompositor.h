// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>

#include <atomic>
#include <memory>

/// What a compositor answers to one request for a picture.
enum class CaptureAnswer {
    Picture,
    /// Other constraints are told first, as after a change of the output's mode.
    ChangedConstraints,
    Failure,
    /// The session ends, as when the output is unplugged.
    Stopped,
    Silence,
};

/// A compositor with one output that offers ext_image_copy_capture_manager_v1 and nothing else,
/// played on a thread of its own. Programs find it by $WAYLAND_DISPLAY while it lives.
class CaptureCompositor
{
public:
    struct Script
    {
        /// The one that wl_output tells, at the origin.
        QByteArray outputName;
        bool hasOutput = true;
        bool offersSources = true;
        /// What the output shows, upright.
        QImage picture;
        /// A value of wl_output.transform: how the output's hardware has the picture.
        int transform = 0;
        /// Values of wl_shm.format, in the order in which they are told.
        QList<quint32> formats;
        /// One after the other; the last one stays.
        QList<CaptureAnswer> answers{CaptureAnswer::Picture};
        /// Whether sessions end at once, without any constraints.
        bool endsSessions = false;
    };

    explicit CaptureCompositor(const Script &script);
    ~CaptureCompositor();
    CaptureCompositor(const CaptureCompositor &) = delete;
    CaptureCompositor &operator=(const CaptureCompositor &) = delete;

    /// Requests for a picture so far.
    int captures() const;
    /// What was done against the protocol's rules, or not as it should be; empty when nothing was.
    QByteArray complaint() const;

private:
    class Server;
    std::unique_ptr<Server> m_server;
};
