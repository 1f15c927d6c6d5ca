// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Pasteboard.h"
#include "Platform/Wayland/DataControlDevice.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QObject>

#include <memory>

/// The clipboard through a data-control protocol, which needs no focus. Other programs read the
/// text from us, from the event loop; what another program copies later stands. Clearing takes
/// effect when control returns to the event loop, unless a text is set first.
class DataControlPasteboard : public Pasteboard
{
public:
    DataControlPasteboard();

    /// Whether the compositor offers what is needed.
    bool isUsable() const { return m_device != nullptr; }

    void clearContents() override;
    void setString(const QString &text) override;
    std::optional<QString> ownString() const override;

private:
    WaylandConnection m_connection;
    std::unique_ptr<DataControlDevice> m_device;
    bool m_isClearing = false;
    /// Ends what is still to be done with itself.
    QObject m_context;
};
