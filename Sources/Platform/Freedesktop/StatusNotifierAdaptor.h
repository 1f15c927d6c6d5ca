// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Freedesktop/StatusNotifierTypes.h"
#include "Platform/StatusItem.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

#include <functional>

/// What hosts read of the item, as StatusNotifierItem names it.
struct StatusNotifierContent
{
    QString id;
    QString title;
    QString iconName;
    QString iconThemePath;
    StatusNotifierPixmaps iconPixmap;
    QString iconAccessibleDescription;
    /// The tool tip's title and what is below it.
    QString name;
    QString toolTip;
};

/// The interface org.kde.StatusNotifierItem. Most hosts draw the menu at `Menu` on a right click;
/// the others call ContextMenu and leave it to us.
class StatusNotifierAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDescription)
    Q_PROPERTY(StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    /// `clicked` is called before the host has its answer, so it only notes the click: hosts open
    /// the menu where the answer is late. A signal would go out on the bus.
    StatusNotifierAdaptor(QObject *parent, std::function<void(StatusItemEvent::Type)> clicked);

    /// Tells the hosts what of it is new.
    void setContent(const StatusNotifierContent &content);

    QString category() const;
    QString id() const { return m_content.id; }
    QString title() const { return m_content.title; }
    QString status() const;
    int windowId() const { return 0; }
    QString iconName() const { return m_content.iconName; }
    QString iconThemePath() const { return m_content.iconThemePath; }
    StatusNotifierPixmaps iconPixmap() const { return m_content.iconPixmap; }
    QString iconAccessibleDescription() const { return m_content.iconAccessibleDescription; }
    StatusNotifierToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    /// Where a `MenuAdaptor` is, on the item's connection.
    QDBusObjectPath menu() const;

public Q_SLOTS:
    // The hosts' coordinates are in no space that all of them agree on; the pointer's are used.
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString &orientation);
    /// Called before a click or a choice that may show a window.
    void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    std::function<void(StatusItemEvent::Type)> m_clicked;
    StatusNotifierContent m_content;
};
