// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>

/// Shows the program's texts, and those of Qt's own windows, in the first of the user's languages
/// that there is a translation for, and lays windows out in its direction. Without one the texts
/// are English. Called once, after the application object was made.
void installTranslations(const QLocale &locale = QLocale());
