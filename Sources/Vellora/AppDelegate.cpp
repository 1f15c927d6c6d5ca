// SPDX-License-Identifier: MIT
#include "AppDelegate.h"

#include "BundleExtension.h"
#include "MainMenu.h"
#include "MissingStatusItem.h"
#include "Platform/Platform.h"
#include "Platform/SystemSymbol.h"
#include "Settings.h"
#include "SettingsWindow.h"
#include "StatusMark.h"

#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// The panels of a session that starts programs while it comes up are there within this.
constexpr auto panelPatience = 10s;

/// The program's own icon, or the symbol that stands in for it when it cannot be read.
StatusItemImage statusItemImage()
{
    const QString icon = u"menubar_icon"_s;
    QFile file(velloraResources().path(icon, u"png"_s));
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray data = file.readAll();
        if (!QImage::fromData(data).isNull()) {
            return {icon, data, QString()};
        }
    }
    return systemSymbol(u"text.viewfinder"_s, u"Vellora"_s);
}
} // namespace

AppDelegate::AppDelegate() = default;
AppDelegate::~AppDelegate()
{
    recognition.request_stop();
}

void AppDelegate::applicationDidFinishLaunching()
{
    Platform::current().leftovers.remove();
    installMainMenu();
    setupStatusItem();
    setupGlobalHotkey();
    hotkeyCancellable = connect(&Settings::shared(), &Settings::hotkeyStringWillChange, this,
                                &AppDelegate::hotkeyStringWillChange);
    hotkeyEnabledCancellable = connect(&Settings::shared(), &Settings::hotkeyEnabledWillChange,
                                       this, &AppDelegate::hotkeyEnabledWillChange);
    Platform::current().userDefaults->writeDidFail = [self = QPointer(this)] {
        if (self) {
            self->settingsWriteDidFail();
        }
    };
    Platform::current().mainQueue->asyncAfter(5000ms, [self = QPointer(this)] {
        if (self) {
            // A refusal concerns nobody until the user asks for updates.
            self->updaterController.updater().startUpdater();
        }
    });
    watchForPanels();
}

void AppDelegate::watchForPanels()
{
    const auto look = [this] {
        statusItemWasSeen = statusItemWasSeen || !MissingStatusItem::isMissing();
    };
    look();
    connect(&Platform::current().statusBar->exposure(), &StatusItemExposure::changed, this, look);
    Platform::current().mainQueue->asyncAfter(panelPatience, [self = QPointer(this)] {
        if (self && !self->statusItemWasSeen && !MissingStatusItem::wasDismissed()) {
            self->openSettings();
        }
    });
}

void AppDelegate::settingsWriteDidFail()
{
    const QString file = Platform::current().userDefaults->filePath();
    // A per-cent sign would be a directive in the log.
    Platform::current().systemLog->log(u"Settings cannot be saved in "_s +
                                       QString(file).replace(u'%', u"%%"_s));
    if (const auto button = statusItemButton()) {
        show(StatusMark{u"exclamationmark.triangle"_s, tr("Error"),
                        tr("Settings cannot be saved: “%1” cannot be written").arg(file), 3000ms},
             button);
    }
}

void AppDelegate::memoryDidEnd()
{
    Platform::current().systemLog->log(u"Vellora: out of memory"_s);
    if (const auto button = statusItemButton()) {
        show(StatusMark{u"exclamationmark.triangle"_s, tr("Error"),
                        tr("There is not enough memory. Close some programs and try again."),
                        3000ms},
             button);
    }
}

void AppDelegate::setupGlobalHotkey()
{
    globalHotkey = GlobalHotkey::make([self = QPointer(this)] {
        if (self) {
            self->startCapture();
        }
    });
    globalHotkey->onPermissionDenied = [] {
        Settings::shared().setHotkeyEnabled(false);
        // Where the refusal answers the assignment that turns the shortcut on, that assignment
        // is completed after this one and leaves it on.
        Platform::current().mainQueue->async([] {
            if (Settings::shared().hotkeyEnabled()) {
                Settings::shared().setHotkeyEnabled(false);
            }
        });
    };
    globalHotkey->configure(Settings::shared().hotkeyString());
    if (Settings::shared().hotkeyEnabled() && Platform::current().keyTap->isProcessTrusted()) {
        globalHotkey->start();
    }
}

void AppDelegate::hotkeyStringWillChange(const QString &hotkeyString)
{
    if (!Settings::shared().hotkeyEnabled()) {
        return;
    }
    globalHotkey->stop();
    globalHotkey->configure(hotkeyString);
    globalHotkey->start();
}

void AppDelegate::hotkeyEnabledWillChange(bool enabled)
{
    globalHotkey->stop();
    if (enabled) {
        globalHotkey->configure(Settings::shared().hotkeyString());
        globalHotkey->start();
    }
}

void AppDelegate::installMainMenu()
{
    new MainMenu(this);
}

void AppDelegate::setupStatusItem()
{
    statusItem = Platform::current().statusBar->makeStatusItem();
    const auto button = statusItemButton();
    if (!button) {
        return;
    }
    button->setImage(statusItemImage());
    button->setToolTip(defaultToolTip());
    button->setAction([self = QPointer(this)](const StatusItemEvent &event) {
        if (self) {
            self->handleClick(event);
        }
    });
}

std::shared_ptr<StatusItemButton> AppDelegate::statusItemButton() const
{
    return statusItem ? statusItem->button() : nullptr;
}

void AppDelegate::handleClick(const StatusItemEvent &event)
{
    if (event.type == StatusItemEvent::Type::RightMouseUp) {
        showContextMenu(event);
    } else {
        startCapture();
    }
}

void AppDelegate::showContextMenu(const StatusItemEvent &event)
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(tr("Capture Text"), this, &AppDelegate::captureFromMenu);
    menu->addSeparator();
    menu->addAction(tr("Settings…"), QKeySequence(Qt::CTRL | Qt::Key_Comma), this,
                    &AppDelegate::openSettings);
    menu->addAction(tr("Check for Updates…"), this, &AppDelegate::checkForUpdates);
    menu->addSeparator();
    menu->addAction(tr("Quit Vellora"), QKeySequence(Qt::CTRL | Qt::Key_Q), qApp,
                    &QCoreApplication::quit);
    if (const auto button = statusItemButton()) {
        button->popUpContextMenu(std::move(menu), event);
    }
}

void AppDelegate::captureFromMenu()
{
    startCapture();
}

void AppDelegate::checkForUpdates()
{
    updaterController.updater().checkForUpdates();
}

void AppDelegate::performAction(const QString &name)
{
    if (name == u"capture") {
        startCapture();
    } else if (name == u"settings") {
        openSettings();
    } else if (name == u"check-for-updates") {
        checkForUpdates();
    } else if (name == u"quit") {
        QCoreApplication::quit();
    }
}

bool AppDelegate::isIdle() const
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const bool isSeen = std::ranges::any_of(windows, [](const QWindow *window) {
        return window->isVisible() && window->type() != Qt::ToolTip;
    });
    return !isSeen && captureHold.use_count() == 1;
}

void AppDelegate::openSettings()
{
    SettingsWindowController::show(&updaterController.updater());
}
