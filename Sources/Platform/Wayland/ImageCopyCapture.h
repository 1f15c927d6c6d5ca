// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/OutputRecording.h"

struct ext_image_copy_capture_manager_v1;
struct ext_output_image_capture_source_manager_v1;

/// Grabs by ext_image_copy_capture_manager_v1. The picture is of the whole output, of which the
/// rectangle is cut.
class ImageCopyCapture : public OutputRecording
{
public:
    /// As for `OutputRecording`.
    explicit ImageCopyCapture(const Screens &screens,
                              std::chrono::milliseconds longestWait = std::chrono::seconds(2));
    ~ImageCopyCapture() override;

protected:
    bool isOffered() const override { return m_manager && m_sources; }
    QImage copy(const WaylandOutput &output, QSize size, const QRectF &rect,
                QDeadlineTimer deadline) override;

private:
    ext_image_copy_capture_manager_v1 *m_manager;
    ext_output_image_capture_source_manager_v1 *m_sources;
};
