// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>
#include <QString>

/// What begins a capture when a user, or a desktop for them, runs it: it starts the program or asks
/// the running one.
inline QString captureCommand()
{
    return QStringLiteral("gapplication action %1 capture").arg(QGuiApplication::desktopFileName());
}
