// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

/// Keeps what a desktop gives a program that its user has turned to, so that the window which is
/// activated next may come to the front. Qt takes the token from the environment. What cannot be
/// a token is ignored.
void useActivationToken(const QString &token);

/// The same, for the platform data of org.freedesktop.Application.
void useActivationTokenOf(const QVariantMap &platformData);
