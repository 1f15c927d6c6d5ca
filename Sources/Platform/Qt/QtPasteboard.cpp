// SPDX-License-Identifier: MIT
#include "Platform/Qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

void QtPasteboard::clearContents()
{
    QGuiApplication::clipboard()->clear();
}

std::optional<QString> QtPasteboard::ownString() const
{
    const QClipboard &clipboard = *QGuiApplication::clipboard();
    return clipboard.ownsClipboard() && !clipboard.text().isEmpty()
               ? std::optional(clipboard.text())
               : std::nullopt;
}

void QtPasteboard::setString(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}
