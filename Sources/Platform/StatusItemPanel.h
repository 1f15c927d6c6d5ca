// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QMenu>
#include <QObject>

#include <functional>
#include <memory>
#include <utility>

/// One kind of panel that can show the status item. Main thread only.
class StatusItemPanel : public QObject
{
    Q_OBJECT

public:
    enum class Presence {
        /// Not found out yet; a `presenceChanged` follows.
        Unknown,
        Absent,
        Present,
    };

    struct Content
    {
        StatusItemImage image;
        QString toolTip;
    };

    virtual Presence presence() const = 0;

    /// Whether users of the panel that is present get to see tooltips.
    virtual bool showsToolTips() const { return true; }
    /// While it is absent: the name of what would bring this kind of panel to the desktop; empty
    /// where nothing is known.
    virtual QString missingExtension() const { return {}; }

    /// Shows the item, or changes what it shows. Called while the panel is present; a panel that
    /// is restarted gets the item again without another call.
    virtual void show(const Content &content) = 0;
    virtual void hide() = 0;

    /// Where a panel that draws the menu itself gets it; may answer null. Other panels report the
    /// right click.
    void setMenuSource(std::function<std::unique_ptr<QMenu>()> source)
    {
        m_menuSource = std::move(source);
    }

Q_SIGNALS:
    void presenceChanged();
    void clicked(StatusItemEvent::Type type);

protected:
    std::unique_ptr<QMenu> makeMenu() const { return m_menuSource ? m_menuSource() : nullptr; }

private:
    std::function<std::unique_ptr<QMenu>()> m_menuSource;
};
