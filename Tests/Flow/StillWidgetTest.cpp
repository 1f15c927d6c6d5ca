// SPDX-License-Identifier: MIT
#include "StillWidget.h"

#include <QFocusEvent>
#include <QTest>

namespace {

/// How often a widget of either kind was painted.
template <typename Widget>
class Counted : public Widget
{
public:
    int paints = 0;

    /// Paints what is to be painted by now.
    int paintsByNow()
    {
        QCoreApplication::sendPostedEvents();
        return paints;
    }

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
};

template <typename Widget>
int paintsForTheKeyboard(Counted<Widget> &widget)
{
    widget.setFocusPolicy(Qt::StrongFocus);
    const int before = widget.paintsByNow();
    for (const QEvent::Type type : {QEvent::FocusIn, QEvent::FocusOut}) {
        QFocusEvent event(type);
        QCoreApplication::sendEvent(&widget, &event);
    }
    return widget.paintsByNow() - before;
}

} // namespace

class StillWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPaintedWhenItIsShown();
    void isPaintedWhenItAsks();
    void isNotPaintedForTheKeyboard();
};

void StillWidgetTest::isPaintedWhenItIsShown()
{
    Counted<StillWidget> widget;
    for (int times = 1; times <= 2; ++times) {
        const int before = widget.paints;
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        QTRY_VERIFY(widget.paints > before);
        widget.hide();
    }
}

void StillWidgetTest::isPaintedWhenItAsks()
{
    Counted<StillWidget> widget;
    widget.show();
    QTRY_VERIFY(widget.paints > 0);
    const int before = widget.paintsByNow();
    widget.update();
    QCOMPARE(widget.paintsByNow(), before + 1);
}

void StillWidgetTest::isNotPaintedForTheKeyboard()
{
    Counted<StillWidget> still;
    still.show();
    QTRY_VERIFY(still.paints > 0);
    QCOMPARE(paintsForTheKeyboard(still), 0);

    Counted<QWidget> other;
    other.show();
    QTRY_VERIFY(other.paints > 0);
    QVERIFY(paintsForTheKeyboard(other) > 0);
}

QTEST_MAIN(StillWidgetTest)
#include "StillWidgetTest.moc"
