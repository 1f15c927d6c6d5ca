// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Platform.h"

/// Owner of the program's updater, which it does not start by itself.
class UpdaterController
{
public:
    Updater &updater() const { return *Platform::current().updater; }
};
