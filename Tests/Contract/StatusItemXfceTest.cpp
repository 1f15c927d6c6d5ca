// SPDX-License-Identifier: MIT
// The status item in Xfce's panel, which shows StatusNotifierItems and draws their menus itself.

#include "Platform/Freedesktop/StatusNotifierPanel.h"
#include "Platform/Qt/PanelStatusBar.h"
#include "Platform/SystemSymbol.h"
#include "Platform/X11/XEmbedTray.h"
#include "Support/Desktop.h"

#include <QGuiApplication>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void click(const QPoint &position, int button)
{
    outputOf(u"xdotool"_s, {u"mousemove"_s, QString::number(position.x()),
                            QString::number(position.y()), u"click"_s, QString::number(button)});
}

} // namespace

class StatusItemXfceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsOneCrispIconInThePanelsColour();
    void leftClickIsAClick();
    void panelShowsTheMenu();

private:
    /// Where `area` of the screen has changed against `before`, once that is higher than `height`
    /// and changes no more.
    static QRect changed(const QImage &before, const QRect &area, int height);

    bool opensOurMenu();

    QImage m_bare;
    QRect m_place;
    std::unique_ptr<StatusItem> m_item;
    std::shared_ptr<StatusItemButton> m_button;
    int m_leftClicks = 0;
    int m_chosen = 0;
    int m_menusMade = 0;
};

QRect StatusItemXfceTest::changed(const QImage &before, const QRect &area, int height)
{
    const auto difference = [&](const QImage &now) {
        return ::difference(before.copy(area), now.copy(area)).translated(area.topLeft());
    };
    return difference(
        settled([&](const QImage &now) { return difference(now).height() > height; }));
}

void StatusItemXfceTest::init()
{
    outputOf(u"xdotool"_s, {u"mousemove"_s, u"5"_s, u"5"_s});
    m_leftClicks = m_chosen = m_menusMade = 0;
    // The panel may still be about to draw itself, along the lower edge.
    const QRgb wallpaper = seen().pixel(20, 20);
    m_bare =
        settled([&](const QImage &now) { return now.pixel(20, now.height() - 5) != wallpaper; });

    PanelStatusBar bar([] {
        const StatusItemArtwork artwork(QStringLiteral(VELLORA_ICON_THEME),
                                        u"org.vellora.Vellora"_s);
        PanelStatusBar::Panels panels;
        panels.push_back(std::make_unique<StatusNotifierPanel>(
            StatusNotifierPanel::Identity{u"org.example.Test"_s, u"Test"_s}, artwork,
            std::make_shared<PanelMenu>()));
        panels.push_back(std::make_unique<XEmbedTray>(u"Test"_s, artwork));
        return panels;
    });
    m_item = bar.makeStatusItem();
    m_button = m_item->button();
    m_button->setImage(systemSymbol(u"text.viewfinder"_s, {}));
    m_button->setAction([this](const StatusItemEvent &event) {
        if (event.type == StatusItemEvent::Type::LeftMouseUp) {
            ++m_leftClicks;
            return;
        }
        ++m_menusMade;
        auto menu = std::make_unique<QMenu>();
        menu->addAction(u"Capture Text"_s, this, [this] { ++m_chosen; });
        menu->addAction(u"Quit"_s);
        m_button->popUpContextMenu(std::move(menu), event);
    });
    // A separator in the middle of the panel moves when an item comes.
    const QRect screen = m_bare.rect();
    m_place = changed(m_bare, screen.adjusted(screen.width() - 100, 0, 0, 0), 15);
}

void StatusItemXfceTest::cleanup()
{
    m_button.reset();
    m_item.reset();
    QTRY_VERIFY(areAlike(seen(), m_bare));
}

void StatusItemXfceTest::showsOneCrispIconInThePanelsColour()
{
    const QImage icon = seen().copy(m_place);
    const bool isPanelDark = qGray(m_bare.pixel(m_place.center())) < 128;
    int full = 0;
    QRect inked;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            const int grey = qGray(icon.pixel(x, y));
            const bool isFull = isPanelDark ? grey > 220 : grey < 70;
            full += isFull ? 1 : 0;
            inked |= isFull ? QRect(x, y, 1, 1) : QRect();
        }
    }
    // 16 pixels on the 22 of the panel's icons; two icons would be wider. The edge for panels that
    // tint nothing is a pixel around them, and next to nothing is left of it here.
    QCOMPARE(inked.size(), QSize(16, 16));
    QCOMPARE(m_place.size(), QSize(18, 18));
    QVERIFY2(full >= 80, qPrintable(QString::number(full)));
    const QString windows = windowTree();
    QVERIFY2(!windows.contains(u"\"Test\": (\"vellora\""_s), "not in its system tray as well");
}

void StatusItemXfceTest::leftClickIsAClick()
{
    click(m_place.center(), 1);
    QTRY_COMPARE(m_leftClicks, 1);
    click(m_place.center(), 2);
    click(m_place.center(), 1);
    QTRY_COMPARE(m_leftClicks, 2);
    QCOMPARE(m_chosen, 0);
}

bool StatusItemXfceTest::opensOurMenu()
{
    // Milliseconds; not soon, as Escape would close a menu that comes meanwhile.
    constexpr int longestThought = 3000;
    const int made = m_menusMade;
    click(m_place.center(), 3);
    if (QTest::qWaitFor([&] { return m_menusMade > made; }, longestThought)) {
        return true;
    }
    outputOf(u"xdotool"_s, {u"key"_s, u"Escape"_s});
    return false;
}

void StatusItemXfceTest::panelShowsTheMenu()
{
    for (int i = 1; i <= 2; ++i) {
        const QImage before = seen();
        // Until it has read the menu, the panel shows its own; it asks again before showing ours.
        QVERIFY(QTest::qWaitFor([this] { return opensOurMenu(); }, testPatience));
        // Larger than what lights up around the icon.
        const QRect menu = changed(before, before.rect(), 40);
        click(menu.topLeft() + QPoint(menu.width() / 3, 18), 1);
        QTRY_COMPARE(m_chosen, i);
        outputOf(u"xdotool"_s, {u"mousemove"_s, u"5"_s, u"5"_s});
        QTRY_VERIFY(areAlike(seen(), before));
    }
    QCOMPARE(m_leftClicks, 0);
}

QTEST_MAIN(StatusItemXfceTest)
#include "StatusItemXfceTest.moc"
