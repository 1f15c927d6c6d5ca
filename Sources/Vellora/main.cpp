// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "Application.h"
#include "OCRService.h"
#include "Platform/DesktopPlatform.h"
#include "Platform/Platform.h"
#include "Platform/ProcessEnd.h"
#include "Platform/TerminationSignals.h"
#include "Publisher.h"
#include "Translations.h"
#include "UpdateRestart.h"

#include <QApplication>
#include <QPointer>

#include <cstdio>
#include <exception>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// The application object and its delegate, for the life of the process.
std::unique_ptr<Application> app;
std::unique_ptr<AppDelegate> delegate;

/// Runs the program on the desktop that `platform` stands for.
int run(Platform &platform)
{
    ApplicationService &service = *platform.applicationService;
    if (service.claim() == ApplicationService::Claim::Taken) {
        // A session that starts the program twice, by its entry and to restore it, wants one.
        // So does one that another run has started in its place.
        if (platform.loginItem->launchedProgram() || platform.programRestart->isSuccessor()) {
            return 0;
        }
        // The one that runs already does what the user wants from this start.
        if (!service.forward(u"capture"_s)) {
            platform.systemLog->log(u"Vellora is running already but does not answer"_s);
            return 1;
        }
        return 0;
    }
    if (const auto text = platform.programRestart->takeClipboardText()) {
        platform.pasteboard->setString(*text);
    }
    delegate = std::make_unique<AppDelegate>();
    app->memoryDidEnd = [delegate = QPointer(delegate.get())] {
        if (delegate) {
            delegate->memoryDidEnd();
        }
    };
    const UpdateRestart updateRestart([] { return delegate->isIdle(); });
    service.setActionHandler([](const QString &action) { delegate->performAction(action); });
    platform.mainQueue->async([] { delegate->applicationDidFinishLaunching(); });
    const ExitGuard exitGuard([&platform] { platform.userDefaults->flush(); });
    const int status = QApplication::exec();
    // At once: a start from now on is the first again, not one that gets no answer.
    service.release();
    delegate.reset();
    // A recognition under way, which the delegate has stopped, still uses the platform.
    OCRService::waitForDone();
    return status;
}
} // namespace

int main(int argc, char *argv[])
{
    // Portals and panels know the program by it; Qt wants it before the application object.
    QGuiApplication::setDesktopFileName(Publisher::applicationId);
    // Not the display name: Qt would append that to every window's title.
    QCoreApplication::setApplicationName(u"Vellora"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(VELLORA_VERSION));

#ifdef NDEBUG
    // A developer's build keeps its dumps.
    forbidCoreDumps();
#endif
    prepareDesktopPlatform();
    app = std::make_unique<Application>(argc, argv);
    installTranslations();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    int status = 1;
    try {
        const TerminationSignals terminationSignals;
        auto platform =
            makeDesktopPlatform({.applicationId = Publisher::applicationId,
                                 .displayName = Publisher::applicationName,
                                 .comment = QCoreApplication::translate(
                                     "main", "Turns any region of the screen into text"),
                                 .packageName = QStringLiteral(VELLORA_PACKAGE_NAME)});
        status = run(*platform);
        const auto restart = std::move(platform->programRestart);
        platform.reset();
        if (restart->isRequested()) {
            restart->startSuccessor(argv);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "vellora: %s\n", error.what());
    }
    app.reset();
    return status;
}
