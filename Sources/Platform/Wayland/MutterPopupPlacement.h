// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Wayland/ToplevelPopupPlacement.h"

#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class DialogParent;

/// Where GNOME Shell is the compositor: a popup is put at its place as the dialog of a parent that
/// nobody sees. Other windows, and windows on the screen, stay where the compositor has put them,
/// and no place is told.
class MutterPopupPlacement : public QObject, public ToplevelPopupPlacement
{
    Q_OBJECT

public:
    /// Whether modal dialogs stand in the middle of their parent; else they stand a third of the
    /// free height below its upper edge.
    using AttachesDialogs = std::function<bool()>;

    /// `screens` outlives the object.
    MutterPopupPlacement(const Screens &screens, AttachesDialogs attachesDialogs);
    ~MutterPopupPlacement() override;

    /// Whether the compositor offers what it takes. Waits for the compositor.
    static bool isUsable();

    void makeFloating(QWidget &window) override;
    /// Waits for the compositor.
    CocoaRect visibleFrame(const Screen &screen) const override;
    void place(QWidget &window, const Origin &origin) override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    /// Waits for the compositor.
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    const Screens &m_screens;
    AttachesDialogs m_attachesDialogs;
    QPointer<QWidget> m_floating;
    /// Of `m_floating`; none until it is told.
    Origin m_origin;
    std::unique_ptr<DialogParent> m_parent;
    QTimer m_patience;
};
