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
    return screen ? croppedToPoints(m_pictures.value(display), sizeOf(*screen), rect) : QImage();
}

void FrozenScreenRecording::freeze()
{
    if (!m_pictures.isEmpty()) {
        return;
    }
    for (const Screen &screen : m_screens.screens()) {
        if (screen.displayNumber) {
            const QRectF whole(QPointF(0, 0), sizeOf(screen));
            m_pictures.insert(*screen.displayNumber,
                              m_recording->createImage(*screen.displayNumber, whole));
        }
    }
}

void FrozenScreenRecording::thaw()
{
    m_pictures.clear();
}
