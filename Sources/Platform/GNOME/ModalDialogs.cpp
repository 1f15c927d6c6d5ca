// SPDX-License-Identifier: MIT
#include "Platform/GNOME/ModalDialogs.h"

#include "Platform/GNOME/GnomeSettings.h"

bool areModalDialogsAttached()
{
    constexpr auto windowManager = "org.gnome.mutter";
    return GnomeSettings::isInstalled(windowManager) &&
           g_settings_get_boolean(GnomeSettings::open(windowManager).get(), "attach-modal-dialogs");
}
