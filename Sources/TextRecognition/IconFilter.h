// SPDX-License-Identifier: MIT
#pragma once

#include "LineTask.h"

namespace recognition {

/// `task.best` without what a model made of an icon, a check box or a switch before or after the
/// text: a short word at an end of the line, set apart, that the model is not sure of.
Reading withoutIcons(const LineTask &task);

} // namespace recognition
