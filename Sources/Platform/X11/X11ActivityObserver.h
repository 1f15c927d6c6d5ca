// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/EventMonitor.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>

/// Calls its handler when the keyboard goes from this program's windows to another program's.
///
/// Moving it between windows of this program is no such change, nor is a key that another program
/// has grabbed and holds for a moment, such as a volume key: the focus stays where it is then,
/// although Qt's application state changes. Which is why the server is asked.
class X11ActivityObserver : public QObject,
                            public EventMonitor::Monitor,
                            private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// `isActive` tells whether the program has had the keyboard before, which is looked at anew
    /// as soon as the event being handled is over.
    X11ActivityObserver(bool isActive, std::function<void()> handler);
    ~X11ActivityObserver() override;

private:
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void checkSoon();
    void check();

    std::function<void()> m_handler;
    bool m_isActive;
    bool m_isCheckDue = false;
};
