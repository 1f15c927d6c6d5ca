// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/OutputRecording.h"

struct zwlr_screencopy_manager_v1;

/// Grabs by zwlr_screencopy_manager_v1. The picture is of the output's next frame.
class WlrScreencopy : public OutputRecording
{
public:
    /// `screens` outlives the object.
    explicit WlrScreencopy(const Screens &screens);
    ~WlrScreencopy() override;

protected:
    bool isOffered() const override { return m_manager; }
    QImage copy(const WaylandOutput &output, QSize size, const QRectF &rect,
                QDeadlineTimer deadline) override;

private:
    zwlr_screencopy_manager_v1 *m_manager;
};
