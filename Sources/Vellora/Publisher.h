// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The publisher's texts, address and identifiers.
namespace Publisher {
/// The application's id on the session bus and of its desktop entry.
inline const QString applicationId = QStringLiteral("org.vellora.Vellora");
} // namespace Publisher
