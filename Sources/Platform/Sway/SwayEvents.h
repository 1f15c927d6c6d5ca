// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Sway/SwayConnection.h"

#include <QJsonObject>
#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

/// What happens on the desktop, told by sway on a connection of its own. Main thread only.
class SwayEvents : public QObject
{
public:
    enum class Type : quint32 {
        Workspace = 0x80000000,
        Window = 0x80000003,
        Binding = 0x80000005,
    };
    /// May destroy the object.
    using Handler = std::function<void(Type, const QJsonObject &)>;

    /// Subscribes before it returns; `isUsable` is false where that failed.
    SwayEvents(const QList<Type> &types, Handler handler);

    bool isUsable() const { return m_notifier != nullptr; }

private:
    void readEvent();

    SwayConnection m_connection;
    Handler m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
