// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FocusedPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QRasterWindow>

#include <utility>

namespace {
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
    copyWhenFocused();
    if (!m_text || m_window) {
        return;
    }
    m_window = std::make_unique<QRasterWindow>();
    QSurfaceFormat format = m_window->format();
    format.setAlphaBufferSize(8);
    m_window->setFormat(format);
    m_window->setFlags(Qt::Window | Qt::FramelessWindowHint);
    m_window->setTitle(QGuiApplication::applicationDisplayName());
    m_window->resize(1, 1);
    m_window->show();
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
    if (m_window) {
        // It may be handling the event that gave it the keyboard.
        m_window->hide();
        m_window.release()->deleteLater();
    }
}
