// SPDX-License-Identifier: MIT
// A window's name for portals, on every kind of desktop.

#include "Platform/Wayland/ForeignWindow.h"

#include <QRasterWindow>
#include <QTest>

using namespace Qt::StringLiterals;

class ForeignWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAName();
    void everyWindowHasItsOwn();
};

namespace {
std::unique_ptr<QWindow> shown()
{
    auto window = std::make_unique<QRasterWindow>();
    window->resize(200, 100);
    window->show();
    return QTest::qWaitForWindowExposed(window.get(), testPatience) ? std::move(window) : nullptr;
}
} // namespace

void ForeignWindowTest::hasAName()
{
    const auto window = shown();
    QVERIFY(window);
    const QString name = ForeignWindow(*window).identifier();
    if (QGuiApplication::platformName() == u"xcb") {
        QCOMPARE(name, u"x11:%1"_s.arg(window->winId(), 0, 16));
    } else {
        QVERIFY2(name.startsWith(u"wayland:"_s), qPrintable(name));
        QVERIFY(name.size() > u"wayland:"_s.size());
    }
}

void ForeignWindowTest::everyWindowHasItsOwn()
{
    const auto first = shown();
    const auto second = shown();
    QVERIFY(first && second);
    const ForeignWindow one(*first);
    const ForeignWindow other(*second);
    QVERIFY(one.identifier() != other.identifier());
}

QTEST_MAIN(ForeignWindowTest)
#include "ForeignWindowTest.moc"
