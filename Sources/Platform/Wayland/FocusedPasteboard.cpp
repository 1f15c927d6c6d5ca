// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FocusedPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QRasterWindow>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {
/// A busy compositor asks within that. A copy that is replaced while it is read may never be read.
constexpr auto patience = 400ms;
/// When a compositor that does not ask is given up on.
constexpr int mostTries = 8;

/// An overlay just hidden still counts for Qt, until the compositor has said otherwise. KWin never
/// answers programs that ask for what was copied at such a moment.
bool hasKeyboard()
{
    const QWindow *window = QGuiApplication::focusWindow();
    return window && window->isVisible();
}

/// Makes X11 take for the latest what is shown or copied next. Qt counts from the last event it has
/// seen; KWin has taken the clipboard after that perhaps, and older claims are refused.
void learnTime()
{
    using SetTime = void (*)(QScreen *, quint32);
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    QScreen *screen = QGuiApplication::primaryScreen();
    // The type that compilers let every function be cast through.
    using Any = void (*)();
    const auto setTime = reinterpret_cast<SetTime>(
        reinterpret_cast<Any>(native->nativeResourceFunctionForScreen("setapptime")));
    if (setTime && screen) {
        void *now = native->nativeResourceForScreen("gettimestamp", screen);
        setTime(screen, static_cast<quint32>(reinterpret_cast<quintptr>(now)));
    }
}
} // namespace

QStringList AskedMimeData::formats() const
{
    Q_EMIT asked();
    return QMimeData::formats();
}

FocusedPasteboard::FocusedPasteboard()
    : m_isHandedOn(QGuiApplication::platformName() == QLatin1StringView("xcb"))
{
    if (m_isHandedOn) {
        // Qt complains where KWin takes the clipboard in the same moment; it is copied again then.
        QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.clipboard.warning=false"));
    }
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, &FocusedPasteboard::copyAgain);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &FocusedPasteboard::followFocus);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &FocusedPasteboard::copyAgainWhenLost);
}

FocusedPasteboard::~FocusedPasteboard()
{
    if (m_data) {
        QGuiApplication::clipboard()->clear();
        delete m_data;
    }
}

void FocusedPasteboard::clearContents()
{
    m_text.reset();
    if (hasKeyboard()) {
        QGuiApplication::clipboard()->clear();
    }
}

void FocusedPasteboard::setString(const QString &text)
{
    m_text = text;
    m_isCopied = false;
    m_triesLeft = mostTries;
    copyWhenFocused();
    if (m_text && m_isHandedOn) {
        m_patience.start();
    }
    if (m_text && !hasKeyboard()) {
        askForKeyboard();
    }
}

void FocusedPasteboard::askForKeyboard()
{
    if (m_window) {
        return;
    }
    m_window = std::make_unique<QRasterWindow>();
    QSurfaceFormat format = m_window->format();
    format.setAlphaBufferSize(8);
    m_window->setFormat(format);
    m_window->setFlags(Qt::Window | Qt::FramelessWindowHint);
    m_window->setTitle(QGuiApplication::applicationDisplayName());
    m_window->resize(1, 1);
    if (m_isHandedOn) {
        learnTime();
    }
    m_window->show();
}

void FocusedPasteboard::followFocus()
{
    if (hasKeyboard()) {
        if (!m_isCopied || !QGuiApplication::clipboard()->ownsClipboard()) {
            copyWhenFocused();
        }
    } else if (m_text && m_isHandedOn) {
        askForKeyboard();
    }
}

void FocusedPasteboard::copyWhenFocused()
{
    if (m_text && hasKeyboard()) {
        copy();
    }
}

void FocusedPasteboard::copy()
{
    if (m_isHandedOn) {
        learnTime();
    }
    auto *data = new AskedMimeData;
    // Later: Qt is about to answer.
    connect(
        data, &AskedMimeData::asked, this,
        [this, data] {
            if (data == m_data) {
                finish();
            }
        },
        Qt::QueuedConnection);
    data->setText(*m_text);
    m_isCopied = true;
    const QPointer<QMimeData> former = std::exchange(m_data, data);
    QGuiApplication::clipboard()->setMimeData(data);
    delete former;
    if (!m_isHandedOn) {
        finish();
    }
}

void FocusedPasteboard::copyAgainWhenLost()
{
    if (m_text && m_isHandedOn && !QGuiApplication::clipboard()->ownsClipboard()) {
        copyWhenFocused();
    }
}

void FocusedPasteboard::copyAgain()
{
    if (--m_triesLeft == 0) {
        // X11 programs have it at least.
        copy();
        finish();
    } else if (hasKeyboard()) {
        copy();
    } else {
        // KWin may have taken the window for one that nobody has asked for.
        m_window.reset();
        askForKeyboard();
        m_window->requestActivate();
    }
}

void FocusedPasteboard::finish()
{
    m_text.reset();
    m_patience.stop();
    if (m_window) {
        // It may be handling the event that gave it the keyboard.
        m_window->hide();
        m_window.release()->deleteLater();
    }
}
