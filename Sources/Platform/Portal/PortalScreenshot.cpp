// SPDX-License-Identifier: MIT
#include "Platform/Portal/PortalScreenshot.h"

#include "Platform/Portal/PortalApplication.h"
#include "Platform/Portal/ScreenshotPermission.h"
#include "Platform/ScreenImage.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <future>
#include <utility>

using namespace Qt::StringLiterals;

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
    const ScreenshotPermission stored = storedScreenshotPermission();
    if (stored == ScreenshotPermission::Yes) {
        return !m_question || !m_question->awaitsPicture();
    }
    return stored == ScreenshotPermission::Unanswered && m_wasGranted;
}

bool PortalScreenshot::requestAccess()
{
    if (preflightAccess()) {
        return true;
    }
    if (storedScreenshotPermission() == ScreenshotPermission::No) {
        // The portal would refuse without asking.
        m_question.reset();
        return false;
    }
    if (!m_question) {
        m_question = std::make_unique<ScreenshotQuestion>(
            [this](bool isGranted) {
                m_wasGranted = isGranted;
                m_wasUnanswered = !isGranted;
                m_question.release()->deleteLater();
            },
            m_limits.question);
    }
    m_wasUnanswered = false;
    m_question->ask();
    return false;
}

std::optional<ScreenRecordingRefusal> PortalScreenshot::refusal() const
{
    switch (storedScreenshotPermission()) {
    case ScreenshotPermission::Yes:
        return std::nullopt;
    case ScreenshotPermission::No:
        return deniedScreenshots();
    case ScreenshotPermission::Unanswered:
        break;
    }
    if (m_question ? m_question->hasEnded() : m_wasUnanswered) {
        return unansweredScreenshots();
    }
    return std::nullopt;
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
