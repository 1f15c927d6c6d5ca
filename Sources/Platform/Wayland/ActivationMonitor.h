// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/EventMonitor.h"

#include <QObject>
#include <QTimer>

#include <functional>

/// Calls its handler when the compositor takes the keyboard from the last of our windows. A window
/// that had it before this was made does not count: it may lose it long before the one that is
/// watched gets it. A moment without it, as when it goes from one of our windows to another, is no
/// loss.
class ActivationMonitor : public QObject, public EventMonitor::Monitor
{
public:
    explicit ActivationMonitor(std::function<void()> handler);

private:
    void follow();
    void check();

    std::function<void()> m_handler;
    bool m_wasActive = false;
    QTimer m_check;
};
