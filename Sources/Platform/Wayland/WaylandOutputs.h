// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/WaylandConnection.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QScreen;

/// One output, bound for as long as it is looked at: so none is ever out of date.
struct WaylandOutput
{
    explicit WaylandOutput(wl_output *bound);
    ~WaylandOutput();
    WaylandOutput(const WaylandOutput &) = delete;
    WaylandOutput &operator=(const WaylandOutput &) = delete;

    wl_output *proxy;
    /// Empty where the compositor does not tell.
    QString name;
    QPoint origin;
    /// A value of wl_output.transform.
    int32_t transform = WL_OUTPUT_TRANSFORM_NORMAL;
    /// In pixels, as the hardware counts them before the transform.
    QSize modeSize;
};

using WaylandOutputs = std::vector<std::unique_ptr<WaylandOutput>>;

/// All outputs and what the compositor tells of them. They die before the connection.
WaylandOutputs bindOutputs(WaylandConnection &connection, QDeadlineTimer deadline);

/// The output that Qt's screen stands for: of the same name, or else in the same place; null when
/// it is gone.
const WaylandOutput *outputOf(const QScreen &screen, const WaylandOutputs &outputs);

/// Tells the pixels of screens that the compositor counts in pixels though windows on them count
/// points, as GNOME's does unless it scales by fractions. Empty for others.
std::function<QRect(const QScreen &)> waylandPixelGeometry();
