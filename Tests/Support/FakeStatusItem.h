// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Notifications.h"
#include "Platform/StatusItem.h"

#include <QMap>
#include <QMenu>

#include <functional>

/// Fakes of what the program shows without a window; all fields are free to read and set.

class FakeStatusItemButton : public StatusItemButton
{
public:
    StatusItemImage currentImage;
    QString currentToolTip;
    std::function<void(const StatusItemEvent &)> action;
    /// Called with each image, if set.
    std::function<void()> onImage;
    std::unique_ptr<QMenu> menu;
    int menuCount = 0;

    StatusItemImage image() const override { return currentImage; }
    void setImage(const StatusItemImage &image) override
    {
        currentImage = image;
        if (onImage) {
            onImage();
        }
    }
    QString toolTip() const override { return currentToolTip; }
    void setToolTip(const QString &toolTip) override { currentToolTip = toolTip; }
    void setAction(std::function<void(const StatusItemEvent &)> handler) override
    {
        action = std::move(handler);
    }
    void popUpContextMenu(std::unique_ptr<QMenu> shown, const StatusItemEvent &) override
    {
        menu = std::move(shown);
        ++menuCount;
    }

    void leftClick() { action({StatusItemEvent::Type::LeftMouseUp, {}}); }
    void rightClick() { action({StatusItemEvent::Type::RightMouseUp, {}}); }
};

class FakeStatusBar : public StatusBar
{
public:
    /// Reset: status items have no button.
    std::shared_ptr<FakeStatusItemButton> button = std::make_shared<FakeStatusItemButton>();

    StatusItemExposure shown;

    FakeStatusBar() { shown.set(StatusItemExposure::Extent::ImageAndToolTip); }

    /// Called when a status item is asked for, if set.
    std::function<void()> onMake;

    std::unique_ptr<StatusItem> makeStatusItem() override
    {
        if (onMake) {
            onMake();
        }
        return std::make_unique<Item>(button);
    }
    const StatusItemExposure &exposure() const override { return shown; }

private:
    struct Item : StatusItem
    {
        explicit Item(std::shared_ptr<StatusItemButton> shown)
            : m_button(std::move(shown))
        {
        }
        std::shared_ptr<StatusItemButton> button() const override { return m_button; }

    private:
        std::shared_ptr<StatusItemButton> m_button;
    };
};

class FakeNotifications : public Notifications
{
public:
    /// What is seen now, by its id.
    QMap<QString, Notification> shown;
    /// Every message there was, in the order of their posting.
    QList<Notification> posted;

    void post(const QString &id, const Notification &notification) override
    {
        shown[id] = notification;
        posted << notification;
    }
    void withdraw(const QString &id) override { shown.remove(id); }

    /// The user clicks what is shown under `id`.
    void click(const QString &id)
    {
        const Notification clicked = shown.take(id);
        if (clicked.action) {
            clicked.action();
        }
    }
};
