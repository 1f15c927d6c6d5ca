// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>

#include <optional>

/// Where KWin has put a window of ours, asked over the session bus. KWin's answer to a search for
/// its title, as for the window switcher in the launcher, gives the window's number, and that its
/// frame. Main thread only.
///
/// The Wayland protocol org_kde_plasma_window_management would tell it too, of all programs'
/// windows. It needs to be named in the desktop entry, and KWin 5.27 reads the file of such a
/// program whole, twice, for each connection of it.
class KWinWindowFrame
{
public:
    /// The frame of the window of ours with this title, title bar and borders included, in Qt's
    /// global coordinates. Absent where there is no KWin, or no such window. A KWin that does not
    /// answer in time is taken to have left the window where it was. Blocks until the answer.
    std::optional<QRect> ofTitle(const QString &title);

private:
    /// As KWin names windows.
    QString m_number;
    QString m_title;
    std::optional<QRect> m_frame;
};
