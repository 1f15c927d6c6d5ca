// SPDX-License-Identifier: MIT
// The status item in real panels: where it is seen, that it stands out, what a click does, and
// panels that come and go. The panel is the desktop's, or one that the test starts.

#include "Platform/Freedesktop/StatusNotifierPanel.h"
#include "Platform/Qt/PanelStatusBar.h"
#include "Platform/SystemSymbol.h"
#include "Platform/X11/XEmbedTray.h"
#include "Support/Desktop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

using Type = StatusItemEvent::Type;

/// A panel started by the test.
class PanelProcess
{
public:
    PanelProcess(const QString &program, const QStringList &arguments)
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.start(program, arguments);
    }
    ~PanelProcess() { end(); }
    void end()
    {
        m_process.terminate();
        m_process.waitForFinished(testPatience);
    }
    void crash()
    {
        m_process.kill();
        m_process.waitForFinished(testPatience);
    }

private:
    QProcess m_process;
};

QStringList trayerArguments(const QString &tint)
{
    return {u"--edge"_s,        u"bottom"_s,  u"--align"_s,       u"right"_s,
            u"--widthtype"_s,   u"request"_s, u"--height"_s,      u"24"_s,
            u"--SetDockType"_s, u"true"_s,    u"--transparent"_s, u"true"_s,
            u"--alpha"_s,       u"0"_s,       u"--tint"_s,        tint};
}

/// The pixels of the one colour among those of the picture.
int count(const QImage &image, const std::function<bool(QRgb)> &matches)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            found += matches(image.pixel(x, y)) ? 1 : 0;
        }
    }
    return found;
}

void xdotool(const QStringList &arguments)
{
    outputOf(u"xdotool"_s, arguments);
}

} // namespace

class StatusItemPanelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void trayTintsDarkAndLight_data();
    void trayTintsDarkAndLight();
    void trayThatStartsLaterGetsTheItem();
    void trayThatCrashesLeavesNothingBehind();
    void clicksInATray();
    void menuInATrayOpensAndCloses();
    void markChangesThePicture();
    void itemMovesToTheBetterPanelAndBack();
    void itemThatGoesTakesItsIconAlong();

private:
    void makeItem(QStringView kinds = u"xembed");
    /// Where the item is, once it has been drawn: what has changed against `m_bare`.
    QRect place();
    static int docked();
    static bool isOnTheBus();

    std::unique_ptr<StatusItem> m_item;
    std::shared_ptr<StatusItemButton> m_button;
    QList<Type> m_clicks;
    QImage m_bare;
};

void StatusItemPanelsTest::initTestCase()
{
    xdotool({u"mousemove"_s, u"5"_s, u"5"_s});
    m_bare = settled();
}

void StatusItemPanelsTest::cleanup()
{
    m_button.reset();
    m_item.reset();
    m_clicks.clear();
    xdotool({u"mousemove"_s, u"5"_s, u"5"_s});
    QTRY_VERIFY(areAlike(seen(), m_bare));
}

void StatusItemPanelsTest::makeItem(QStringView kinds)
{
    PanelStatusBar bar([kinds] {
        const StatusItemArtwork artwork(QStringLiteral(VELLORA_ICON_THEME),
                                        u"org.vellora.Vellora"_s);
        PanelStatusBar::Panels panels;
        if (kinds.contains(u"sni")) {
            panels.push_back(std::make_unique<StatusNotifierPanel>(
                StatusNotifierPanel::Identity{u"org.example.Test"_s, u"Test"_s}, artwork,
                std::make_shared<PanelMenu>()));
        }
        if (kinds.contains(u"xembed")) {
            panels.push_back(std::make_unique<XEmbedTray>(u"Test"_s, artwork));
        }
        return panels;
    });
    m_item = bar.makeStatusItem();
    m_button = m_item->button();
    m_button->setImage(systemSymbol(u"text.viewfinder"_s, {}));
    m_button->setToolTip(u"tip"_s);
    m_button->setAction([this](const StatusItemEvent &event) { m_clicks.append(event.type); });
}

int StatusItemPanelsTest::docked()
{
    // One line for each window of the tree that is called by the item's title.
    return static_cast<int>(windowTree().count(u"\"Test\": (\"vellora\""_s));
}

bool StatusItemPanelsTest::isOnTheBus()
{
    const QStringList names =
        QDBusConnection::sessionBus().interface()->registeredServiceNames().value();
    return !names.filter(u"org.kde.StatusNotifierItem-"_s).isEmpty();
}

QRect StatusItemPanelsTest::place()
{
    return difference(m_bare, settled([this](const QImage &now) {
                          const QRect changed = difference(m_bare, now);
                          return changed.width() >= 16 && changed.height() >= 16;
                      }));
}

void StatusItemPanelsTest::trayTintsDarkAndLight_data()
{
    QTest::addColumn<QString>("tint");
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << u"0xf0f0f0"_s << false;
    QTest::newRow("dark") << u"0x202020"_s << true;
}

void StatusItemPanelsTest::trayTintsDarkAndLight()
{
    QFETCH(const QString, tint);
    QFETCH(const bool, isDark);
    PanelProcess trayer(u"trayer"_s, trayerArguments(tint));
    makeItem();
    const auto isIcon = [isDark](QRgb pixel) {
        return isDark ? qGray(pixel) > 220 : qGray(pixel) < 70;
    };
    const auto isBehind = [isDark](QRgb pixel) {
        return isDark ? qGray(pixel) < 70 : qGray(pixel) > 220;
    };
    // Brackets and lines of the symbol are whole pixels: 92 of them, and nothing between the two.
    QImage icon;
    const auto isDrawn = [&] {
        icon = seen().copy(place());
        return count(icon, isIcon) >= 90;
    };
    QVERIFY(QTest::qWaitFor(isDrawn, testPatience));
    const int behind = count(icon, isBehind);
    QVERIFY2(behind > count(icon, isIcon), qPrintable(QString::number(behind)));
}

void StatusItemPanelsTest::trayThatStartsLaterGetsTheItem()
{
    makeItem();
    QVERIFY(areAlike(seen(), m_bare));
    for (int i = 0; i < 3; ++i) {
        PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
        QTRY_COMPARE(docked(), 1);
        QVERIFY(!place().isEmpty());
        trayer.end();
        QTRY_VERIFY(areAlike(seen(), m_bare));
    }
}

void StatusItemPanelsTest::trayThatCrashesLeavesNothingBehind()
{
    makeItem();
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    QTRY_COMPARE(docked(), 1);
    QVERIFY(!place().isEmpty());
    trayer.crash();
    QTRY_VERIFY(areAlike(seen(), m_bare));
    QTRY_COMPARE(docked(), 0);
}

void StatusItemPanelsTest::clicksInATray()
{
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    makeItem();
    const QPoint middle = place().center();
    const QString x = QString::number(middle.x());
    const QString y = QString::number(middle.y());
    xdotool({u"mousemove"_s, x, y, u"mousedown"_s, u"1"_s});
    xdotool({u"mouseup"_s, u"1"_s});
    QTRY_COMPARE(m_clicks, QList<Type>({Type::LeftMouseUp}));
    // Released elsewhere, other buttons and the wheel: nothing.
    xdotool({u"mousedown"_s, u"1"_s});
    xdotool({u"mousemove"_s, u"--sync"_s, u"100"_s, u"100"_s});
    xdotool({u"mouseup"_s, u"1"_s});
    QCOMPARE(m_clicks, QList<Type>({Type::LeftMouseUp}));
    xdotool({u"mousemove"_s, x, y, u"click"_s, u"2"_s, u"click"_s, u"4"_s, u"click"_s, u"5"_s});
    xdotool({u"mousemove"_s, x, y, u"click"_s, u"3"_s});
    QTRY_COMPARE(m_clicks, QList<Type>({Type::LeftMouseUp, Type::RightMouseUp}));
}

void StatusItemPanelsTest::menuInATrayOpensAndCloses()
{
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    makeItem();
    QPointer<QMenu> shown;
    int chosen = 0;
    m_button->setAction([&](const StatusItemEvent &event) {
        auto menu = std::make_unique<QMenu>();
        menu->addAction(u"Capture"_s, this, [&] { ++chosen; });
        shown = menu.get();
        m_button->popUpContextMenu(std::move(menu), event);
    });
    const QPoint middle = place().center();
    const QStringList click{u"mousemove"_s, QString::number(middle.x()),
                            QString::number(middle.y()), u"click"_s, u"3"_s};
    QVERIFY2(!QApplication::activeWindow(), "another program is active all the time");
    const auto isOpen = [&] {
        return shown && shown->isVisible() && shown->windowHandle()->isExposed();
    };
    for (int i = 0; i < 3; ++i) {
        xdotool(click);
        QTRY_VERIFY(isOpen());
        xdotool({u"mousemove"_s, u"200"_s, u"200"_s, u"click"_s, u"1"_s});
        QTRY_VERIFY(!shown);
        xdotool(click);
        QTRY_VERIFY(isOpen());
        xdotool({u"key"_s, u"Escape"_s});
        QTRY_VERIFY(!shown);
    }
    QCOMPARE(chosen, 0);
    xdotool(click);
    QTRY_VERIFY(isOpen());
    xdotool({u"key"_s, u"Down"_s, u"Return"_s});
    QTRY_COMPARE(chosen, 1);
    QTRY_VERIFY(!shown);
}

void StatusItemPanelsTest::markChangesThePicture()
{
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    makeItem();
    const QRect where = place();
    const QImage before = seen().copy(where);
    const StatusItemImage image = m_button->image();
    m_button->setImage(systemSymbol(u"checkmark.circle.fill"_s, u"Copied"_s));
    QTRY_VERIFY(!areAlike(seen().copy(where), before));
    QTRY_VERIFY(windowTree().contains(u"\"Test: Copied\""_s));
    m_button->setImage(image);
    QTRY_VERIFY(areAlike(seen().copy(where), before));
}

void StatusItemPanelsTest::itemMovesToTheBetterPanelAndBack()
{
    makeItem(u"sni, xembed");
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    QTRY_COMPARE(docked(), 1);
    {
        // It has both kinds, and takes the system tray away from the other one.
        PanelProcess xfce(u"xfce4-panel"_s, {u"--disable-wm-check"_s});
        QTRY_VERIFY(docked() == 0 && isOnTheBus());
        trayer.end();
        QCOMPARE(docked(), 0);
    }
    QTRY_VERIFY(!isOnTheBus());
    PanelProcess again(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    QTRY_COMPARE(docked(), 1);
}

void StatusItemPanelsTest::itemThatGoesTakesItsIconAlong()
{
    PanelProcess trayer(u"trayer"_s, trayerArguments(u"0xf0f0f0"_s));
    makeItem();
    QTRY_COMPARE(docked(), 1);
    m_item.reset();
    QTRY_COMPARE(docked(), 0);
}

QTEST_MAIN(StatusItemPanelsTest)
#include "StatusItemPanelsTest.moc"
