// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FrozenScreenRecording.h"

#include "Platform/ScreenImage.h"

#include <utility>

FrozenScreenRecording::FrozenScreenRecording(std::unique_ptr<ScreenRecording> recording,
                                             const Screens &screens)
    : m_recording(std::move(recording))
    , m_screens(screens)
{
}

bool FrozenScreenRecording::preflightAccess() const
{
    return m_recording->preflightAccess();
}

bool FrozenScreenRecording::requestAccess()
{
    return m_recording->requestAccess();
}

std::optional<ScreenRecordingRefusal> FrozenScreenRecording::refusal() const
{
    return m_recording->refusal();
}

QImage FrozenScreenRecording::createImage(quint32 display, const QRectF &rect)
{
    if (m_pictures.isEmpty()) {
        return m_recording->createImage(display, rect);
    }
    const auto screen = screenOf(m_screens, display);
    if (!screen) {
        return {};
    }
    QImage image = croppedToPoints(m_pictures.value(display), sizeOf(*screen), rect);
    image.setDevicePixelRatio(1);
    return image;
}

void FrozenScreenRecording::freeze()
{
    if (!m_pictures.isEmpty()) {
        return;
    }
    for (const Screen &screen : m_screens.screens()) {
        if (screen.displayNumber) {
            const QRectF whole(QPointF(0, 0), sizeOf(screen));
            QImage picture = m_recording->createImage(*screen.displayNumber, whole);
            // Now, as it would be copied for each panel that changes it.
            picture.setDevicePixelRatio(picture.width() / whole.width());
            m_pictures.insert(*screen.displayNumber, picture);
        }
    }
}

void FrozenScreenRecording::thaw()
{
    m_pictures.clear();
}
