// SPDX-License-Identifier: MIT
#include "Platform/Portal/ScreenshotQuestion.h"

#include "Platform/Portal/PortalApplication.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

ScreenshotQuestion::ScreenshotQuestion(Handler handler, Limits limits)
    : m_handler(std::move(handler))
    , m_limits(limits)
{
    m_wait.setSingleShot(true);
    m_wait.callOnTimeout(this, &ScreenshotQuestion::giveUpWaiting);
    connect(&m_permission, &ScreenshotPermissionWatch::changed, this,
            &ScreenshotQuestion::permissionChanged);
}

ScreenshotQuestion::~ScreenshotQuestion()
{
    closeWindow();
}

void ScreenshotQuestion::closeWindow()
{
    m_wait.stop();
    m_name.reset();
    if (m_window) {
        // It loses the keyboard now, and not to a dialog.
        m_window->removeEventFilter(this);
        m_window.reset();
    }
}

void ScreenshotQuestion::ask()
{
    // A new window, which gets the keyboard where one that is there already could only ask for it.
    closeWindow();
    m_window = std::make_unique<PermissionWindow>();
    m_window->installEventFilter(this);
    connect(m_window.get(), &PermissionWindow::askedAgain, this, &ScreenshotQuestion::request);
    // Later: the window is in the midst of it.
    connect(
        m_window.get(), &PermissionWindow::dismissed, this, [this] { finish(false); },
        Qt::QueuedConnection);
    m_isAsked = false;
    m_hasEnded = false;
    m_wasRepeated = false;
    m_window->show();
    m_window->activateWindow();
}

bool ScreenshotQuestion::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::WindowActivate) {
        // Once Qt is done with it.
        QMetaObject::invokeMethod(this, &ScreenshotQuestion::windowDidActivate,
                                  Qt::QueuedConnection);
    } else if (event->type() == QEvent::WindowDeactivate && m_isAsked) {
        m_hadDialog = true;
        m_wait.stop();
    }
    return false;
}

void ScreenshotQuestion::windowDidActivate()
{
    if (!m_window || !m_window->isActiveWindow()) {
        return;
    }
    if (!m_isAsked) {
        request();
    } else if (m_hadDialog) {
        m_wait.start(m_limits.answer);
    }
}

void ScreenshotQuestion::request()
{
    m_isAsked = true;
    m_hasEnded = false;
    m_hadDialog = false;
    m_window->showQuestion();
    if (!m_name) {
        m_name = std::make_unique<ForeignWindow>(*m_window->windowHandle());
    }
    m_requests.push_back(std::make_unique<ScreenshotRequest>(
        [this](const QImage &image, const QString &) { answered(!image.isNull()); },
        m_name->identifier()));
    m_wait.start(m_limits.dialog);
    m_requests.back()->start();
}

void ScreenshotQuestion::permissionChanged()
{
    if (m_window && storedScreenshotPermission() == ScreenshotPermission::Yes) {
        // No picture has to show the window.
        m_window->hide();
        m_awaitsPicture = m_isAsked;
        m_wait.start(m_limits.picture);
    }
}

void ScreenshotQuestion::giveUpWaiting()
{
    if (std::exchange(m_awaitsPicture, false)) {
        // Granted otherwise than by our question, such as in the settings.
        finish(true);
        return;
    }
    if (!m_window->isActiveWindow() ||
        storedScreenshotPermission() != ScreenshotPermission::Unanswered) {
        // The dialog is there, or its answer, of which the portal tells in its own time.
        return;
    }
    if (m_hadDialog && !std::exchange(m_wasRepeated, true)) {
        // Answered, and too late for the portal.
        request();
        return;
    }
    showUnanswered();
}

void ScreenshotQuestion::showUnanswered()
{
    const QString id = portalApplicationId();
    const bool isForeign = !id.isEmpty() && id != QGuiApplication::desktopFileName();
    // To the portal the program is the one that has started it, which has no window in front.
    m_window->showUnanswered(
        isForeign ? tr("It asks only for programs that it has started itself: start %1 from the "
                       "list of applications.")
                        .arg(QCoreApplication::applicationName())
                  : QString());
}

void ScreenshotQuestion::answered(bool isGranted)
{
    if (isGranted || storedScreenshotPermission() != ScreenshotPermission::Unanswered) {
        finish(isGranted);
    } else {
        m_hasEnded = true;
        showUnanswered();
    }
}

void ScreenshotQuestion::finish(bool isGranted)
{
    m_wait.stop();
    if (m_window) {
        m_window->removeEventFilter(this);
        m_window->hide();
    }
    if (const Handler handler = std::exchange(m_handler, nullptr)) {
        handler(isGranted);
    }
}
