// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "Platform/Platform.h"
#include "ScreenCapture.h"
#include "ScreenRegionSelector.h"
#include "Settings.h"
#include "SettingsWindow.h"
#include "StatusMark.h"

#include <QPointer>

#include <chrono>
#include <new>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// What is said of a failure: to the user in the language of the windows, in the log in English.
struct Message
{
    explicit Message(const char *text)
        : shown(AppDelegate::tr(text))
        , logged(QString::fromUtf8(text))
    {
    }

    QString shown;
    QString logged;
};

Message message(const OCRError &error)
{
    switch (error.value()) {
    case OCRError::Case::emptyImage:
        return Message(QT_TRANSLATE_NOOP("AppDelegate", "Empty selection"));
    case OCRError::Case::noText:
        return Message(QT_TRANSLATE_NOOP("AppDelegate", "No text found"));
    case OCRError::Case::vision:
        break;
    }
    Message message(QT_TRANSLATE_NOOP("AppDelegate", "OCR error: "));
    message.shown += error.underlying()->localizedDescription();
    message.logged += error.underlying()->englishDescription();
    return message;
}
} // namespace

void AppDelegate::startCapture()
{
    if (!Platform::current().screenRecording->preflightAccess()) {
        requestScreenPermission();
        return;
    }
    Platform::current().textRecognizer->prepare();
    const auto selector = std::make_shared<ScreenRegionSelector>();
    selector->retainSelf = selector;
    selector->onFailure = [self = QPointer(this)] {
        if (self) {
            self->showFailure(QT_TR_NOOP("The desktop let no overlay cover the screen"));
        }
    };
    selector->onMemoryEnd = [self = QPointer(this)] {
        if (self) {
            self->memoryDidEnd();
        }
    };
    try {
        selector->show(
            [self = QPointer(this), hold = captureHold](const std::optional<CocoaRect> &rect) {
                if (!self) {
                    return;
                }
                try {
                    self->selectionDidFinish(rect, hold);
                } catch (const std::bad_alloc &) {
                    self->memoryDidEnd();
                }
            });
    } catch (const std::bad_alloc &) {
        // What is on the screens by then goes; the event's end tells of it.
        selector->finish(std::nullopt);
        throw;
    }
}

void AppDelegate::selectionDidFinish(const std::optional<CocoaRect> &rect, const CaptureHold &hold)
{
    const QImage image = rect ? ScreenCapture::capture(*rect) : QImage();
    if (image.isNull()) {
        return;
    }
    if (Settings::shared().shutterSound()) {
        playShutterSound();
    }
    // The user waits for this picture's text now: an older one must not arrive after it, or take
    // its time.
    recognition.request_stop();
    recognition = std::stop_source();
    OCRService::recognize(
        image,
        [self = QPointer(this), rect = *rect, hold](const RecognitionOutcome &outcome) {
            if (self) {
                self->recognitionDidFinish(outcome, rect);
            }
        },
        recognition.get_token());
}

void AppDelegate::recognitionDidFinish(const RecognitionOutcome &outcome,
                                       const CocoaRect &captureRect)
{
    if (const auto *text = std::get_if<QString>(&outcome)) {
        deliverResult(*text, captureRect);
    } else {
        showOCRError(std::get<OCRError>(outcome));
    }
}

void AppDelegate::deliverResult(const QString &text, const CocoaRect &captureRect)
{
    const OutputMode mode = Settings::shared().outputMode();
    if (mode != OutputMode::popupOnly) {
        Pasteboard &pasteboard = *Platform::current().pasteboard;
        pasteboard.clearContents();
        pasteboard.setString(text);
        pasteboard.whenCopied([self = QPointer(this)](bool isCopied) {
            if (self) {
                self->textWasCopied(isCopied);
            }
        });
    }
    if (mode != OutputMode::clipboardOnly) {
        // The settings never stand beside a result.
        if (QWidget *settingsWindow = SettingsWindowController::window()) {
            settingsWindow->hide();
        }
        resultPopup.show(text, captureRect);
    }
}

void AppDelegate::textWasCopied(bool isCopied)
{
    if (!isCopied) {
        showFailure(
            QT_TR_NOOP("The text could not be copied: the desktop gave Vellora no keyboard"));
    } else if (Settings::shared().showNotification()) {
        showCopiedNotification();
    }
}

void AppDelegate::showOCRError(const OCRError &error)
{
    if (const auto button = statusItemButton()) {
        const Message text = message(error);
        show(StatusMark{u"exclamationmark.triangle"_s, tr("Error"), text.shown, 2000ms,
                        u"Vellora OCR: "_s + text.logged},
             button);
    }
}

void AppDelegate::showFailure(const char *text)
{
    if (const auto button = statusItemButton()) {
        const Message said(text);
        show(StatusMark{u"exclamationmark.triangle"_s, tr("Error"), said.shown, 3000ms,
                        u"Vellora: "_s + said.logged},
             button);
    }
}

void AppDelegate::playShutterSound()
{
    SystemSounds &sounds = *Platform::current().systemSounds;
    // The sound theme's names for a camera's shutter and for a picture taken of the screen.
    for (const QString &name : {u"camera-shutter"_s, u"screen-capture"_s}) {
        const QString file = sounds.file(name);
        if (!file.isEmpty() && sounds.play(file)) {
            return;
        }
    }
    sounds.beep();
}

void AppDelegate::showCopiedNotification()
{
    if (const auto button = statusItemButton()) {
        show(StatusMark{u"checkmark.circle.fill"_s, tr("Copied"), std::nullopt, 1500ms}, button);
    }
}
