// SPDX-License-Identifier: MIT
#pragma once

#include "AppDelegate.h"
#include "Support/FakePlatform.h"

#include <memory>

/// A delegate past its launch over a fake platform, new for every test, that recognizes two lines.
class CaptureFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

protected:
    FakeStatusItemButton &button() { return *m_platform->statusBar.button; }
    QWidget *popup() { return m_platform->popupPlacement.window; }
    /// Drags over the open overlay.
    void select();
    /// Selects, and waits until everything that follows at once has happened.
    void capture();
    static void settle();

    /// Set aside for the life of the process, as the settings themselves live as long.
    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<AppDelegate> m_delegate;
};
