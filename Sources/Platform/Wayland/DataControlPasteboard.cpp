// SPDX-License-Identifier: MIT
#include "Platform/Wayland/DataControlPasteboard.h"

#include <QTimer>

#include <utility>

DataControlPasteboard::DataControlPasteboard()
    : m_device(makeDataControlDevice(m_connection))
{
    m_connection.listen();
}

void DataControlPasteboard::clearContents()
{
    // A text mostly follows at once, and the two are one change then: clipboard managers answer an
    // empty selection in between by putting back what they remember.
    m_isClearing = true;
    QTimer::singleShot(0, &m_context, [this] {
        if (std::exchange(m_isClearing, false) && m_device) {
            m_device->clear();
        }
    });
}

std::optional<QString> DataControlPasteboard::ownString() const
{
    const auto text = m_device ? m_device->text() : std::nullopt;
    return text ? std::optional(QString::fromUtf8(*text)) : std::nullopt;
}

void DataControlPasteboard::setString(const QString &text)
{
    m_isClearing = false;
    if (m_device) {
        m_device->setText(text.toUtf8());
    }
}
