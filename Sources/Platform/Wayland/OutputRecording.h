// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"
#include "Platform/Wayland/WaylandConnection.h"
#include "Platform/Wayland/WaylandOutputs.h"

#include <chrono>

struct wl_shm;

/// Grabs by a protocol that copies pictures of the compositor's outputs into shared memory. A
/// compositor that offers such a protocol lets every program grab.
///
/// A grab blocks until the compositor has made the picture. An edge between two pixels takes the
/// outer one, so that nothing of what was asked for is missing.
class OutputRecording : public ScreenRecording
{
public:
    ~OutputRecording() override;

    bool preflightAccess() const final;
    bool requestAccess() final;
    QImage createImage(quint32 display, const QRectF &rect) final;

protected:
    /// `screens` outlives the object. A compositor that shows no picture for `longestWait`, such as
    /// one whose output is switched off, is given up on.
    explicit OutputRecording(const Screens &screens,
                             std::chrono::milliseconds longestWait = std::chrono::seconds(2));

    WaylandConnection &connection() { return m_connection; }
    wl_shm *shm() const { return m_shm; }

    /// Whether the compositor offers the protocol.
    virtual bool isOffered() const = 0;

    /// The pixels of `rect`, which lies within the output of `size`, both in points, origin
    /// top-left; null when there are none by the deadline.
    virtual QImage copy(const WaylandOutput &output, QSize size, const QRectF &rect,
                        QDeadlineTimer deadline) = 0;

private:
    const Screens &m_screens;
    std::chrono::milliseconds m_longestWait;
    WaylandConnection m_connection;
    wl_shm *m_shm = nullptr;
};

/// A picture as the output's hardware shows it, turned as people see it. `transform` is a value of
/// wl_output.transform.
QImage upright(const QImage &image, int32_t transform);
