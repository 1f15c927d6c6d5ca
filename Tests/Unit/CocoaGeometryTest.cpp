// SPDX-License-Identifier: MIT
#include "Platform/CocoaGeometry.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class CocoaGeometryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void edges();
    void points();
    void rects();
    void intersections();
    void sizesAsText();
    void readingSizes_data();
    void readingSizes();
    void rectsAsText();
};

void CocoaGeometryTest::edges()
{
    const CocoaRect rect{{-10, 20}, {30, 40}};
    QCOMPARE(rect.minX(), -10.0);
    QCOMPARE(rect.midX(), 5.0);
    QCOMPARE(rect.maxX(), 20.0);
    QCOMPARE(rect.minY(), 20.0);
    QCOMPARE(rect.midY(), 40.0);
    QCOMPARE(rect.maxY(), 60.0);
}

void CocoaGeometryTest::points()
{
    const CocoaRect rect{{10, 20}, {30, 40}};
    QVERIFY(rect.contains(CocoaPoint{10, 20}));
    QVERIFY(rect.contains(CocoaPoint{39.9, 59.9}));
    QVERIFY(!rect.contains(CocoaPoint{40, 30}));
    QVERIFY(!rect.contains(CocoaPoint{20, 60}));
    QVERIFY(!rect.contains(CocoaPoint{9.9, 30}));
    QVERIFY(!CocoaRect{}.contains(CocoaPoint{0, 0}));
}

void CocoaGeometryTest::rects()
{
    const CocoaRect rect{{0, 0}, {100, 100}};
    QVERIFY(rect.contains(rect));
    QVERIFY(rect.contains(CocoaRect{{90, 90}, {10, 10}}));
    QVERIFY(!rect.contains(CocoaRect{{90, 90}, {10, 10.5}}));
    QVERIFY(!rect.contains(CocoaRect{{-1, 0}, {10, 10}}));
}

void CocoaGeometryTest::intersections()
{
    const CocoaRect one{{0, 0}, {100, 100}};
    QCOMPARE(one.intersection({{60, -20}, {100, 50}}), (CocoaRect{{60, 0}, {40, 30}}));
    // Rectangles that only touch share nothing.
    QCOMPARE(one.intersection({{100, 0}, {10, 10}}).size, CocoaSize{});
    QCOMPARE(one.intersection({{500, 500}, {10, 10}}).size, CocoaSize{});
}

void CocoaGeometryTest::sizesAsText()
{
    QCOMPARE(stringFromSize({360, 240}), u"{360, 240}"_s);
    QCOMPARE(stringFromSize({360.5, 0}), u"{360.5, 0}"_s);
    const CocoaSize odd{1.0 / 3, 1e20};
    QCOMPARE(sizeFromString(stringFromSize(odd)), odd);
}

void CocoaGeometryTest::readingSizes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::newRow("usual") << u"{380, 420}"_s << 380.0 << 420.0;
    QTest::newRow("without blanks") << u"{380,420}"_s << 380.0 << 420.0;
    QTest::newRow("signs and exponents") << u"{-1.5e2, +.5}"_s << -150.0 << 0.5;
    QTest::newRow("empty") << QString() << 0.0 << 0.0;
    QTest::newRow("words") << u"large"_s << 0.0 << 0.0;
    QTest::newRow("one number") << u"{380}"_s << 0.0 << 0.0;
    QTest::newRow("beyond all numbers") << u"{1e999, 2}"_s << 0.0 << 0.0;
    QTest::newRow("endless") << u"{380, 420}"_s + QString(100000, u'1') << 0.0 << 0.0;
}

void CocoaGeometryTest::readingSizes()
{
    QFETCH(const QString, text);
    QFETCH(const double, width);
    QFETCH(const double, height);
    QCOMPARE(sizeFromString(text), (CocoaSize{width, height}));
}

void CocoaGeometryTest::rectsAsText()
{
    const CocoaRect rect{{10, -20}, {380, 420.25}};
    QCOMPARE(stringFromRect(rect), u"{{10, -20}, {380, 420.25}}"_s);
    QCOMPARE(rectFromString(stringFromRect(rect)), rect);
    QCOMPARE(rectFromString(u"{{1, 2}}"_s), CocoaRect{});
}

QTEST_APPLESS_MAIN(CocoaGeometryTest)
#include "CocoaGeometryTest.moc"
