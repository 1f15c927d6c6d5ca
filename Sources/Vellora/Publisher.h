// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QtGlobal>

/// The publisher's texts, address and identifiers.
namespace Publisher {
/// The application's id on the session bus and of its desktop entry.
inline const QString applicationId = QStringLiteral("org.vellora.Vellora");

/// The program's name, the same in every language.
inline const QString applicationName = QStringLiteral("Vellora");

/// Who made the program; translated where it is shown, in the context "Publisher".
inline constexpr const char *creditLine =
    QT_TRANSLATE_NOOP("Publisher", "Developed by the Vellora Project");

inline const QString webSiteName = QStringLiteral("vellora.org");
inline const QString webSiteAddress = QStringLiteral("https://vellora.org/");

/// Translated like the credit line.
inline constexpr const char *noticeLine =
    QT_TRANSLATE_NOOP("Publisher", "© 2026 The Vellora Project");
} // namespace Publisher
