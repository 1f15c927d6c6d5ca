// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"

#include <QObject>

#include <memory>
#include <optional>

class QWidget;
class Updater;

/// The one settings window: opens it, and remembers its frame. Main thread only.
class SettingsWindowController : public QObject
{
    Q_OBJECT

public:
    /// Opens the window with a new form, or brings the open one to the front as it is. `updater`
    /// may be null.
    static void show(Updater *updater);

    /// The window that was opened last, also once the user has closed it; null before the first.
    static QWidget *window();

    /// Follows the moves and sizes of a window.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    SettingsWindowController() = default;

    static SettingsWindowController &shared();
    static std::unique_ptr<QWidget> makeWindow(Updater *updater);
    void restoreFrame(QWidget &window);
    /// The window has become the active one: the window manager has given it its frame and place.
    void windowDidAppear();
    void windowDidResize();
    void windowDidMove();
    void storeFrame();
    /// Stores what no event told: not every desktop tells of the user's moves.
    void storeUnseenMove();

    /// The frame that the window is to have, until it has appeared.
    std::optional<CocoaRect> m_restoredFrame;
    bool m_appeared = false;
    /// As it was when it was last looked at; absent before the window has appeared.
    std::optional<CocoaRect> m_knownFrame;
};
