// SPDX-License-Identifier: MIT
#include "Platform/Wayland/OutputRecording.h"

#include "Platform/ScreenImage.h"

#include <QScreen>
#include <QTransform>

OutputRecording::OutputRecording(const Screens &screens, std::chrono::milliseconds longestWait)
    : m_screens(screens)
    , m_longestWait(longestWait)
    , m_shm(m_connection.bindFirst<wl_shm>(wl_shm_interface, 1))
{
    m_connection.listen();
}

OutputRecording::~OutputRecording()
{
    if (m_shm) {
        wl_shm_destroy(m_shm);
    }
}

bool OutputRecording::preflightAccess() const
{
    return isOffered() && m_shm && m_connection.isUsable();
}

bool OutputRecording::requestAccess()
{
    return preflightAccess();
}

QImage OutputRecording::createImage(quint32 display, const QRectF &rect)
{
    const QScreen *screen = qtScreen(m_screens, display);
    if (!screen || !preflightAccess()) {
        return {};
    }
    const QRectF within = rect & QRectF(QPointF(0, 0), QSizeF(screen->size()));
    if (within.isEmpty()) {
        return {};
    }
    const QDeadlineTimer deadline(m_longestWait);
    const WaylandOutputs outputs = bindOutputs(m_connection, deadline);
    const WaylandOutput *output = outputOf(*screen, outputs);
    return output ? copy(*output, screen->size(), within, deadline) : QImage();
}

QImage upright(const QImage &image, int32_t transform)
{
    QTransform turn;
    // The numbers count counter-clockwise quarter turns; 4 is added for a flip around the
    // vertical axis, which the compositor does first.
    const bool isFlipped = transform >= WL_OUTPUT_TRANSFORM_FLIPPED;
    turn.rotate(90.0 * (transform % 4));
    if (isFlipped) {
        turn.scale(-1, 1);
    }
    return turn.isIdentity() ? image : image.transformed(turn);
}
