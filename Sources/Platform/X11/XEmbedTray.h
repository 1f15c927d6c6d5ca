// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Qt/StatusItemArtwork.h"
#include "Platform/StatusItemPanel.h"
#include "Platform/X11/X11Connection.h"

#include <QTimer>

#include <memory>

class QSocketNotifier;
class XEmbedIcon;

/// The system tray of an X11 screen, into which programs dock a small window of their own: the
/// freedesktop.org system tray protocol on XEMBED. Has its own connection to the server, so that
/// the windows and errors of foreign panels do not meet Qt's.
class XEmbedTray : public StatusItemPanel
{
    Q_OBJECT

public:
    /// `title` is the program's name for people. Absent for good where there is no X server.
    XEmbedTray(QString title, StatusItemArtwork artwork);
    ~XEmbedTray() override;

    Presence presence() const override;
    /// The protocol has none, and the trays here show no balloons in their place. The tooltip is
    /// only seen by who waits on the icon: it is a window of ours.
    bool showsToolTips() const override { return false; }
    void show(const Content &content) override;
    void hide() override;

private:
    void readEvents();
    void handle(const xcb_generic_event_t &event);
    xcb_window_t selectionOwner() const;
    /// Finds the tray that there is now, and docks into it what is shown.
    void findTray();
    void dock();
    void setTray(xcb_window_t tray);

    QString m_title;
    StatusItemArtwork m_artwork;
    X11Connection m_x;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// What a tray owns while it is there: _NET_SYSTEM_TRAY_S with the screen's number.
    xcb_atom_t m_selection = XCB_NONE;
    /// The window that owns the tray's selection.
    xcb_window_t m_tray = XCB_NONE;
    /// Set between `show` and `hide`.
    std::unique_ptr<Content> m_content;
    std::unique_ptr<XEmbedIcon> m_icon;
    QTimer m_toolTipDelay;
};
