// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Platform.h"

#include <QPixmap>
#include <QWidget>

#include <memory>
#include <vector>

/// A panel that looks like those of the program: a dim with a clear, outlined hole.
class TestPanel : public QWidget
{
    Q_OBJECT

public:
    TestPanel();

    QPixmap backdrop;
    QRect hole;

Q_SIGNALS:
    void painted();
    void keyPressed(int key);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

/// Deletes as the program does: not within the event that orders the panel out.
struct LaterDeleter
{
    void operator()(QObject *object) const { object->deleteLater(); }
};

/// Panels over all screens, shown and ordered out as the program does it.
class TestOverlay
{
public:
    explicit TestOverlay(Platform &platform);
    ~TestOverlay();

    const std::vector<std::unique_ptr<TestPanel, LaterDeleter>> &panels() const { return m_panels; }

    /// Blocks, with the event loop running, until every panel has been painted once.
    bool waitUntilPainted();
    void orderOut();

private:
    Platform &m_platform;
    std::vector<std::unique_ptr<TestPanel, LaterDeleter>> m_panels;
    std::size_t m_painted = 0;
};
