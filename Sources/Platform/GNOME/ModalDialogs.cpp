// SPDX-License-Identifier: MIT
#include "Platform/GNOME/ModalDialogs.h"

#include "Platform/GNOME/GnomeSettings.h"

bool areModalDialogsAttached()
{
    constexpr auto windowManager = "org.gnome.mutter";
    constexpr auto key = "attach-modal-dialogs";
    return GnomeSettings::hasKey(windowManager, key) &&
           g_settings_get_boolean(GnomeSettings::open(windowManager).get(), key);
}
