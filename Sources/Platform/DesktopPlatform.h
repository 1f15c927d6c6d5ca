// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Platform.h"

#include <QString>

#include <memory>
#include <stdexcept>

/// What the desktop is told about the program. What is left empty, except for the id and the
/// comment, comes from the application object.
struct DesktopPlatformOptions
{
    /// Reverse domain name, such as "org.example.Editor": the name on the session bus, of the
    /// desktop entry and of the entry among the autostarted programs.
    QString applicationId;
    /// The program's name for people.
    QString displayName = {};
    /// One sentence on what it does, for lists of programs.
    QString comment = {};
    /// Absolute path of the program, for starting it at login; else the running file.
    QString executablePath = {};
    /// The application's icon: a name in the icon theme or an absolute path; else the id.
    QString iconName = {};
    /// Absolute path of a folder of icon themes that holds the status item's pictures, as
    /// "hicolor/symbolic/apps/<application id>-<name>-symbolic.svg", dots of the name written
    /// as dashes; else "../share/icons" from the program.
    QString iconThemeFolder = {};
    /// The name of the package that this copy came in; empty for a copy that came in none.
    QString packageName = {};
};

/// A session in which the program cannot work. `what()` is a message for people: why, and what
/// they can do.
class UnsupportedDesktop : public std::runtime_error
{
public:
    explicit UnsupportedDesktop(const QString &message)
        : std::runtime_error(message.toStdString())
    {
    }

    QString message() const { return QString::fromUtf8(what()); }
};

/// What has to be done before the application object is made.
void prepareDesktopPlatform();

/// The services of the desktop that the process runs on, each the first of its candidates that
/// works here. Needs the QApplication. Main thread only. Throws `UnsupportedDesktop`.
std::unique_ptr<Platform> makeDesktopPlatform(const DesktopPlatformOptions &given);
