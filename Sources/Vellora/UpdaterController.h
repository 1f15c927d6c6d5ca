// SPDX-License-Identifier: MIT
#pragma once

#include "Updater.h"

/// Owner of the program's updater, which it does not start by itself.
class UpdaterController
{
public:
    Updater &updater() { return m_updater; }

private:
    Updater m_updater;
};
