// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/SessionLaunch.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {
const char *const autostartedVariable = "VELLORA_AUTOSTARTED";
/// Set by the entries that the bus and systemd have of the program.
const char *const activatedVariable = "VELLORA_ACTIVATED";
} // namespace

QStringList commandAtLogin(const QString &program)
{
    return {u"/usr/bin/env"_s, QLatin1StringView(autostartedVariable) + u"=1"_s, program};
}

bool isLaunchedBySession()
{
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return qEnvironmentVariableIsSet(autostartedVariable) ||
           qEnvironmentVariableIsSet(activatedVariable) ||
           (application && application->isSessionRestored());
}
