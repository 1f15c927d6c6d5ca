// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalScreenshot.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/Portal/PortalApplication.h"
#include "Platform/ScreenImage.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QMap>
#include <QTimer>

#include <future>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// The store answers from memory.
constexpr int storeTimeLimit = 1000;

enum class Stored {
    Yes,
    No,
    Nothing,
};

/// What the user once answered.
Stored storedPermission()
{
    const auto bus = sessionBus();
    if (!bus) {
        return Stored::Nothing;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.impl.portal.PermissionStore"_s,
        u"/org/freedesktop/impl/portal/PermissionStore"_s,
        u"org.freedesktop.impl.portal.PermissionStore"_s, u"Lookup"_s);
    call << u"screenshot"_s << u"screenshot"_s;
    const QDBusMessage reply = bus->call(call, QDBus::Block, storeTimeLimit);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return Stored::Nothing;
    }
    const auto permissions = qdbus_cast<QMap<QString, QStringList>>(reply.arguments().constFirst());
    const QString answer = permissions.value(portalApplicationId()).value(0);
    if (answer == u"yes") {
        return Stored::Yes;
    }
    return answer == u"no" ? Stored::No : Stored::Nothing;
}
} // namespace

PortalScreenshot::PortalScreenshot(const Screens &screens, SystemLog &log,
                                   std::shared_ptr<PanelMenu> panelMenu, Limits limits)
    : m_screens(screens)
    , m_log(log)
    , m_panelMenu(std::move(panelMenu))
    , m_limits(limits)
{
    m_thread.start();
}

PortalScreenshot::~PortalScreenshot()
{
    m_thread.quit();
    m_thread.wait();
}

bool PortalScreenshot::isOffered()
{
    return portalVersion(u"Screenshot"_s) > 0;
}

bool PortalScreenshot::preflightAccess() const
{
    const Stored stored = storedPermission();
    return stored == Stored::Yes || (stored == Stored::Nothing && m_wasGranted);
}

bool PortalScreenshot::requestAccess()
{
    if (preflightAccess()) {
        return true;
    }
    if (!m_question) {
        m_question =
            std::make_unique<ScreenshotRequest>([this](const QImage &image, const QString &) {
                m_wasGranted = !image.isNull();
                m_question.release()->deleteLater();
            });
        m_question->start();
    }
    return false;
}

QImage PortalScreenshot::takePicture()
{
    std::promise<QImage> picture;
    auto *request =
        new ScreenshotRequest([this, &picture](const QImage &image, const QString &problem) {
            if (!problem.isEmpty()) {
                m_log.logVerbatim(problem);
            }
            picture.set_value(image);
        });
    request->setLimit(m_limits.answer);
    request->moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        request, [request] { request->start(); }, Qt::QueuedConnection);
    QImage image = picture.get_future().get();
    request->deleteLater();
    if (image.isNull()) {
        m_wasGranted = false;
    }
    return image;
}

QImage PortalScreenshot::takeSettledPicture()
{
    QImage picture = takePicture();
    if (!m_panelMenu->isLeaving() || picture.isNull()) {
        return picture;
    }
    const QDeadlineTimer limit(m_limits.rest);
    QImage before;
    do {
        before = std::exchange(picture, takePicture());
    } while (!picture.isNull() && picture != before && !limit.hasExpired());
    return picture;
}

QImage PortalScreenshot::createImage(quint32 display, const QRectF &rect)
{
    const auto screen = screenOf(m_screens, display);
    if (!screen) {
        return {};
    }
    if (m_picture.isNull()) {
        m_picture = takeSettledPicture();
        QTimer::singleShot(0, this, [this] { m_picture = {}; });
    }
    return cutFromDesktop(m_picture, m_screens, *screen, rect);
}
