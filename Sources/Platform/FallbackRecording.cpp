// SPDX-License-Identifier: MIT
#include "Platform/FallbackRecording.h"

#include <utility>

FallbackRecording::FallbackRecording(std::unique_ptr<ScreenRecording> preferred, Maker makeOther)
    : m_preferred(std::move(preferred))
    , m_makeOther(std::move(makeOther))
    , m_current(m_preferred.get())
{
}

bool FallbackRecording::preflightAccess() const
{
    for (ScreenRecording *each : {m_preferred.get(), m_other.get()}) {
        if (each && each->preflightAccess()) {
            m_current = each;
            return true;
        }
    }
    return false;
}

bool FallbackRecording::requestAccess()
{
    if (m_preferred->requestAccess()) {
        m_current = m_preferred.get();
        return true;
    }
    if (const Maker make = std::exchange(m_makeOther, nullptr)) {
        m_other = make();
    }
    if (m_other && m_other->requestAccess()) {
        m_current = m_other.get();
        return true;
    }
    return false;
}

std::optional<ScreenRecordingRefusal> FallbackRecording::refusal() const
{
    const auto refused = m_preferred->refusal();
    if (!refused || !m_other) {
        return refused;
    }
    const auto refusedToo = m_other->refusal();
    if (!refusedToo) {
        return std::nullopt;
    }
    return ScreenRecordingRefusal{refused->message + u'\n' + refusedToo->message,
                                  refused->logText + u' ' + refusedToo->logText};
}

QImage FallbackRecording::createImage(quint32 display, const QRectF &rect)
{
    return m_current->createImage(display, rect);
}
