// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// One combination among the custom shortcuts of GNOME's settings daemon, which runs a command for
/// it: our action "capture" over the session bus. So no callback hears of a press.
///
/// A program that is killed leaves the shortcut; it then starts the program, where that is
/// installed, until the next start removes it.
class CustomKey : public KeyTap::Tap
{
public:
    CustomKey() = default;
    /// Takes the shortcut out of the settings.
    ~CustomKey() override;
    CustomKey(const CustomKey &) = delete;
    CustomKey &operator=(const CustomKey &) = delete;

    /// Whether GNOME has such settings here.
    static bool isOffered();

    /// Takes out of the settings what a program that was killed left there: entries at our places
    /// that run our command. Nothing where GNOME has no such settings.
    static void removeLeftover();

    /// False for a key without a name in the layout in use, or when the user has put other entries
    /// at all our places. The daemon tells nobody of a combination that it cannot have.
    bool setCombination(const KeyCombination &combination) override;
};
