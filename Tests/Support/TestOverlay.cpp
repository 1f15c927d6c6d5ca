// SPDX-License-Identifier: MIT
#include "Support/TestOverlay.h"

#include "Support/Patience.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTest>

TestPanel::TestPanel()
{
    setFocusPolicy(Qt::StrongFocus);
}

void TestPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), backdrop.isNull() ? QBrush(Qt::transparent) : QBrush(backdrop));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setClipRegion(QRegion(rect()) - hole);
    painter.fillRect(rect(), QColor(0, 0, 0, 64));
    painter.setClipping(false);
    painter.setPen(QPen(QColor(0, 122, 255, 242), 1.5));
    painter.drawRect(hole);
    Q_EMIT painted();
}

void TestPanel::keyPressEvent(QKeyEvent *event)
{
    Q_EMIT keyPressed(event->key());
}

TestOverlay::TestOverlay(Platform &platform)
    : m_platform(platform)
{
    for (const Screen &screen : platform.screens->screens()) {
        m_panels.emplace_back(new TestPanel);
        TestPanel &panel = *m_panels.back();
        QObject::connect(
            &panel, &TestPanel::painted, &panel, [this] { ++m_painted; }, Qt::SingleShotConnection);
        panel.backdrop = platform.overlaySurface->cover(panel, screen).value_or(QPixmap());
        panel.hole = QRect(100, 100, 300, 200);
        platform.overlaySurface->orderFront(panel);
        platform.overlaySurface->makeKey(panel);
        panel.setFocus();
    }
}

TestOverlay::~TestOverlay()
{
    orderOut();
}

bool TestOverlay::waitUntilPainted()
{
    return QTest::qWaitFor([this] { return m_painted == m_panels.size(); }, testPatience);
}

void TestOverlay::orderOut()
{
    for (const auto &panel : m_panels) {
        m_platform.overlaySurface->orderOut(*panel);
    }
    m_panels.clear();
}
