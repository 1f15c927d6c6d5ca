// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FocusedPasteboard.h"

#include "Platform/Wayland/PointWindow.h"

#include <QClipboard>
#include <QGuiApplication>

#include <chrono>
#include <utility>

namespace {
/// A compositor gives a new window the keyboard within a frame or two. Later, the user may have
/// copied something else.
constexpr std::chrono::seconds patience(5);

/// An overlay just hidden still counts for Qt, until the compositor has said otherwise.
bool hasKeyboard()
{
    const QWindow *window = QGuiApplication::focusWindow();
    return window && window->isVisible();
}
} // namespace

FocusedPasteboard::FocusedPasteboard()
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            &FocusedPasteboard::copyWhenFocused);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] { end(false); });
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
    m_done = nullptr;
    if (hasKeyboard()) {
        QGuiApplication::clipboard()->clear();
    }
}

void FocusedPasteboard::setString(const QString &text)
{
    m_text = text;
    m_done = nullptr;
    m_patience.start();
    copyWhenFocused();
    if (!m_text || m_window) {
        return;
    }
    m_window = std::make_unique<PointWindow>();
    m_window->show();
}

void FocusedPasteboard::whenCopied(std::function<void(bool)> done)
{
    if (m_text) {
        m_done = std::move(done);
    } else {
        done(true);
    }
}

std::optional<QString> FocusedPasteboard::ownString() const
{
    if (m_text) {
        return m_text;
    }
    return m_data && QGuiApplication::clipboard()->ownsClipboard() ? std::optional(m_data->text())
                                                                   : std::nullopt;
}

void FocusedPasteboard::copyWhenFocused()
{
    if (!m_text || !hasKeyboard()) {
        return;
    }
    auto *data = new QMimeData;
    data->setText(*std::exchange(m_text, std::nullopt));
    const QPointer<QMimeData> former = std::exchange(m_data, data);
    QGuiApplication::clipboard()->setMimeData(data);
    delete former;
    end(true);
}

void FocusedPasteboard::end(bool isCopied)
{
    m_patience.stop();
    m_text.reset();
    if (m_window) {
        // It may be handling the event that gave it the keyboard.
        m_window->hide();
        m_window.release()->deleteLater();
    }
    if (const auto done = std::exchange(m_done, nullptr)) {
        done(isCopied);
    }
}
