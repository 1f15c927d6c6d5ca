// SPDX-License-Identifier: MIT
#include "Platform/Wayland/DataControlPasteboard.h"

DataControlPasteboard::DataControlPasteboard()
    : m_device(makeDataControlDevice(m_connection))
{
    m_connection.listen();
}

void DataControlPasteboard::clearContents()
{
    if (m_device) {
        m_device->clear();
    }
}

void DataControlPasteboard::setString(const QString &text)
{
    if (m_device) {
        m_device->setText(text.toUtf8());
    }
}
