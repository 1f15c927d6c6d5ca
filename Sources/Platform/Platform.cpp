// SPDX-License-Identifier: MIT
#include "Platform/Platform.h"

namespace {
Platform *currentPlatform = nullptr;
}

Platform::Platform()
{
    currentPlatform = this;
}

Platform::~Platform()
{
    if (currentPlatform == this) {
        currentPlatform = nullptr;
    }
}

Platform &Platform::current()
{
    Q_ASSERT_X(currentPlatform, "Platform::current", "no platform has been made");
    return *currentPlatform;
}
