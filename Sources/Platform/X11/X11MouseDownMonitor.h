// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/EventMonitor.h"
#include "Platform/X11/X11Connection.h"

#include <QObject>
#include <QPoint>
#include <QSocketNotifier>

#include <functional>
#include <memory>

/// Calls its handler for every press of the left or right button outside this program's windows,
/// title bars included, with the place of the pointer on the root window in pixels.
class X11MouseDownMonitor : public QObject, public EventMonitor::Monitor
{
    Q_OBJECT

public:
    explicit X11MouseDownMonitor(std::function<void(QPoint)> handler);

    /// Whether the server tells of presses.
    bool isListening() const { return m_notifier != nullptr; }

private:
    void readEvents();
    void pressed();

    X11Connection m_connection;
    std::function<void(QPoint)> m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
