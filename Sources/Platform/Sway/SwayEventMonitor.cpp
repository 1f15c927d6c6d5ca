// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayEventMonitor.h"

#include "Platform/Sway/SwayEvents.h"
#include "Platform/Wayland/ActivationMonitor.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {
/// Calls its handler when a window of another application becomes the focused one.
class ForeignFocusMonitor : public EventMonitor::Monitor
{
public:
    explicit ForeignFocusMonitor(const std::function<void()> &handler)
        : m_activation(handler)
        , m_events(
              {SwayEvents::Type::Window}, [handler](SwayEvents::Type, const QJsonObject &event) {
                  const QJsonObject window = event.value("container"_L1).toObject();
                  if (event.value("change"_L1).toString() == u"focus" &&
                      window.value("app_id"_L1).toString() != QGuiApplication::desktopFileName()) {
                      // A copy, because it may destroy this object.
                      const auto call = handler;
                      call();
                  }
              })
    {
    }

private:
    ActivationMonitor m_activation;
    SwayEvents m_events;
};
} // namespace

std::unique_ptr<EventMonitor::Monitor>
SwayEventMonitor::addResignActiveObserver(std::function<void()> handler)
{
    return std::make_unique<ForeignFocusMonitor>(handler);
}
