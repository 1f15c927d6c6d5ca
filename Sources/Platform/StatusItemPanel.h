// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QObject>

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

    /// Shows the item, or changes what it shows. Called while the panel is present; a panel that
    /// is restarted gets the item again without another call.
    virtual void show(const Content &content) = 0;
    virtual void hide() = 0;

Q_SIGNALS:
    void presenceChanged();
    void clicked(StatusItemEvent::Type type);
};
