// SPDX-License-Identifier: MIT
#include "Platform/Qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

void QtPasteboard::clearContents()
{
    QGuiApplication::clipboard()->clear();
}

void QtPasteboard::setString(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}
