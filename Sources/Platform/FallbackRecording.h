// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"

#include <functional>
#include <memory>

/// Grabs by a recording that is preferred, or by another one where the desktop refuses that.
class FallbackRecording : public ScreenRecording
{
public:
    /// Answers null where the desktop has no other way.
    using Maker = std::function<std::unique_ptr<ScreenRecording>()>;

    /// `makeOther` is called once at most, when access is requested and the preferred recording
    /// has none.
    FallbackRecording(std::unique_ptr<ScreenRecording> preferred, Maker makeOther);

    bool preflightAccess() const override;
    bool requestAccess() override;
    /// What both say, the preferred recording first.
    std::optional<ScreenRecordingRefusal> refusal() const override;
    QImage createImage(quint32 display, const QRectF &rect) override;

private:
    std::unique_ptr<ScreenRecording> m_preferred;
    Maker m_makeOther;
    std::unique_ptr<ScreenRecording> m_other;
    /// The one that had access when it was last asked for.
    mutable ScreenRecording *m_current;
};
