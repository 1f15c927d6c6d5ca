// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Bundle.h"

/// The program's own resources, found once, on first use, beside or in the installed program.
/// Ends the program when they are nowhere. Any thread.
const Bundle &velloraResources();

/// The same resources as the build laid them out: next to the program, else in the build tree.
/// Ends the program when they are in neither. Any thread.
const Bundle &module();
