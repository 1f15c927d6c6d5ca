// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

/// The single-colour symbol of this name, such as "lock.shield", for the status item. Unknown
/// names give an image without data.
StatusItemImage systemSymbol(const QString &name, const QString &accessibilityDescription);
