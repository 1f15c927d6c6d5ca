// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"

#include <QHash>

#include <memory>

/// Grabs by another recording, or from pictures of the screens while those are frozen: for overlays
/// that the compositor does not let the desktop show through, and that stand on its picture.
class FrozenScreenRecording : public ScreenRecording
{
public:
    /// `screens` outlives the object.
    FrozenScreenRecording(std::unique_ptr<ScreenRecording> recording, const Screens &screens);

    bool preflightAccess() const override;
    bool requestAccess() override;
    std::optional<ScreenRecordingRefusal> refusal() const override;
    QImage createImage(quint32 display, const QRectF &rect) override;

    /// Takes pictures of all screens, unless they are frozen. Grabs come from these until `thaw`.
    void freeze();
    void thaw();

    /// The whole picture of a frozen screen, with the screen's pixels per point; null when it is
    /// not, or could not be grabbed. All who ask share its pixels.
    QImage picture(quint32 display) const { return m_pictures.value(display); }

private:
    std::unique_ptr<ScreenRecording> m_recording;
    const Screens &m_screens;
    QHash<quint32, QImage> m_pictures;
};
