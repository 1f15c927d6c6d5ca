// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItemExposure.h"

#include <QByteArray>
#include <QPoint>
#include <QString>

#include <functional>
#include <memory>

class QMenu;

/// A picture of one colour that the desktop tints to suit its panel.
struct StatusItemImage
{
    /// Identifies the picture, such as "menubar_icon" or "checkmark.circle.fill".
    QString name;
    /// The picture's file, SVG or PNG; only its opacity counts.
    QByteArray data;
    /// What a screen reader says of it; may be empty.
    QString accessibilityDescription;

    bool operator==(const StatusItemImage &) const = default;
};

/// A click on the status item, reported when the button is released.
struct StatusItemEvent
{
    enum class Type { LeftMouseUp, RightMouseUp };

    Type type = Type::LeftMouseUp;
    /// The pointer, in Qt's global coordinates (points, origin top-left, y down).
    QPoint position;
};

/// What is seen and clicked of a status item. Main thread only.
class StatusItemButton
{
public:
    virtual ~StatusItemButton() = default;

    virtual StatusItemImage image() const = 0;
    virtual void setImage(const StatusItemImage &image) = 0;

    virtual QString toolTip() const = 0;
    virtual void setToolTip(const QString &toolTip) = 0;

    /// Called on the release of the left or right mouse button, and for what a panel offers in
    /// its place (keyboard activation counts as a left click).
    virtual void setAction(std::function<void(const StatusItemEvent &)> action) = 0;

    /// Shows `menu` at the place of `event`. The menu is deleted once it is closed.
    virtual void popUpContextMenu(std::unique_ptr<QMenu> menu, const StatusItemEvent &event) = 0;
};

/// The program's place in the desktop's panel. It is offered to whatever panel there is, also to
/// one that starts later. Main thread only.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Null on a desktop that can never show one. Shared, so that a delayed restoration of its
    /// image may outlive the item.
    virtual std::shared_ptr<StatusItemButton> button() const = 0;
};

/// The part of the desktop's panel where status items live.
class StatusBar
{
public:
    virtual ~StatusBar() = default;

    /// Makes a status item of variable length; it goes away when it is destroyed.
    virtual std::unique_ptr<StatusItem> makeStatusItem() = 0;

    /// How much of the item the user gets to see now.
    virtual const StatusItemExposure &exposure() const = 0;
};
