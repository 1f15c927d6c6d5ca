// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <functional>

/// What an xdg-desktop-portal came to with a request, or with the user.
enum class PortalAnswer {
    Granted,
    Denied, ///< by the user
    Failed, ///< no portal, no sense in its answer, none in time, or another reason of its own
};

/// One call of xdg-desktop-portal, which is answered later by a signal. It may be used on any
/// thread that has an event loop.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    /// The answer, with what comes with one that is granted, or that the portal ended otherwise.
    using Handler = std::function<void(PortalAnswer, const QVariantMap &)>;

    /// What to call: `interface` is the part after "org.freedesktop.portal.", `arguments` are those
    /// before the options.
    struct Call
    {
        QString interface;
        QString method;
        QVariantList arguments;
        QVariantMap options;
    };

    PortalRequest(Call call, Handler handler);
    /// Calls off what was not answered yet, with what the portal asks the user.
    ~PortalRequest() override;

    /// Makes the call. The handler is called once at most, from the event loop, and may destroy
    /// this object.
    void start();

    /// Gives up when the answer takes longer. Without this it may take a user's time.
    void setLimit(std::chrono::milliseconds limit) { m_limit = limit; }

private Q_SLOTS:
    void respond(uint response, const QVariantMap &results);

private:
    void finish(PortalAnswer answer, const QVariantMap &results = {});
    void listen(const QString &path);

    Call m_call;
    Handler m_handler;
    QString m_path;
    std::chrono::milliseconds m_limit{0};
};

/// A name for one request or session that no other of this process has.
QString portalToken();
