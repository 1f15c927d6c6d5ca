// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ActivationMonitor.h"

#include <QGuiApplication>
#include <QWindow>

#include <chrono>
#include <utility>

namespace {
/// Compositors tell of both windows in a row; Qt reports each by itself.
constexpr std::chrono::milliseconds moment(50);
} // namespace

ActivationMonitor::ActivationMonitor(std::function<void()> handler)
    : m_handler(std::move(handler))
{
    m_check.setSingleShot(true);
    m_check.setInterval(moment);
    connect(&m_check, &QTimer::timeout, this, &ActivationMonitor::check);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &ActivationMonitor::follow);
}

void ActivationMonitor::follow()
{
    if (QGuiApplication::focusWindow()) {
        m_wasActive = true;
        m_check.stop();
    } else if (m_wasActive) {
        m_check.start();
    }
}

void ActivationMonitor::check()
{
    m_wasActive = false;
    // A copy, because the handler may destroy this object.
    const auto handler = m_handler;
    handler();
}
