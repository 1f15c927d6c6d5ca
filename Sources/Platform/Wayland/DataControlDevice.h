// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

class WaylandConnection;

/// The clipboard of the first seat, as a data-control protocol lets any program set it. It dies
/// before its connection.
class DataControlDevice
{
public:
    virtual ~DataControlDevice() = default;

    /// Makes `text`, in UTF-8, the clipboard's content until another program copies something.
    virtual void setText(const QByteArray &text) = 0;
    /// What was set, until another program copied something.
    virtual std::optional<QByteArray> text() const = 0;
    /// Empties the clipboard.
    virtual void clear() = 0;
};

/// By ext_data_control_v1, or else by wlr-data-control; null where the compositor offers neither.
std::unique_ptr<DataControlDevice> makeDataControlDevice(WaylandConnection &connection);
