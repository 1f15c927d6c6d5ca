// SPDX-License-Identifier: MIT
#pragma once

/// Whether GNOME's window manager keeps modal dialogs in the middle of their parents, as it does
/// unless its user has chosen otherwise.
bool areModalDialogsAttached();
