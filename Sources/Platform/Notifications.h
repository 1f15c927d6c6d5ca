// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

/// A short message that the desktop shows beside its panel.
struct Notification
{
    /// Plain text, both; what looks like markup is shown as it stands. The body may be empty.
    QString title;
    QString body = {};
    /// Shown for a moment and then gone for good: the desktop keeps none in its list.
    bool isTransient = false;
    /// Called, at most once, when the user clicks the message; where the desktop lets nobody
    /// click one, never. On the main thread.
    std::function<void()> action = {};
};

/// The desktop's notifications. A desktop without any shows nothing, and nobody is told of that: no
/// message may be the only way to something. Main thread only.
class Notifications
{
public:
    virtual ~Notifications() = default;

    /// Shows `notification`, in the place of what was posted under the same `id` before and is
    /// still seen. Ids are the caller's own, such as "mark" or "update".
    virtual void post(const QString &id, const Notification &notification) = 0;

    /// Takes back what was posted under `id`, if it is still seen. Its action is not called.
    virtual void withdraw(const QString &id) = 0;
};
