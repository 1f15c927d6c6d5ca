// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <memory>

struct wl_shm;
struct zwlr_screencopy_manager_v1;

/// Grabs by zwlr_screencopy_manager_v1. A compositor that offers it lets every program grab.
///
/// The picture is of the output's next frame, for which the grab blocks, `longestWait` at most.
/// An edge between two pixels takes the outer one, so that nothing of what was asked for is
/// missing.
class WlrScreencopy : public ScreenRecording
{
public:
    /// `screens` outlives the object.
    explicit WlrScreencopy(const Screens &screens);
    ~WlrScreencopy() override;

    bool preflightAccess() const override;
    bool requestAccess() override;
    QImage createImage(quint32 display, const QRectF &rect) override;

private:
    const Screens &m_screens;
    WaylandConnection m_connection;
    zwlr_screencopy_manager_v1 *m_manager = nullptr;
    wl_shm *m_shm = nullptr;
};
