// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QObject>
#include <QVariantMap>

#include <functional>

/// One call of org.freedesktop.portal.Screenshot: a picture of all screens without the user's
/// doing, but for a question of permission the first time. It may be used on any thread that has
/// an event loop.
class ScreenshotRequest : public QObject
{
    Q_OBJECT

public:
    /// Gets the picture; null when there is none, such as when the user says no or the portal ends.
    using Handler = std::function<void(const QImage &)>;

    explicit ScreenshotRequest(Handler handler);

    /// Calls the portal. The handler is called once at most, from the event loop.
    void start();

private Q_SLOTS:
    void respond(uint response, const QVariantMap &results);

private:
    void finish(const QImage &image);
    void listen(const QString &path);

    Handler m_handler;
    QString m_path;
};
