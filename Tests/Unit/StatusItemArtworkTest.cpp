// SPDX-License-Identifier: MIT
// The status item's pictures as pixels: crisp at the sizes of panels, whatever their colour.

#include "Platform/Qt/StatusItemArtwork.h"

#include "Platform/SystemSymbol.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A frame two units wide along the edge of the part that counts.
const QByteArray frame =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="18" height="18" viewBox="0 0 18 18">)"
    R"(<path fill-rule="evenodd" d="M1 1h16v16H1zM3 3h12v12H3z"/></svg>)";

const QStringList symbols{u"text.viewfinder"_s, u"checkmark.circle.fill"_s,
                          u"exclamationmark.triangle"_s, u"lock.shield"_s,
                          u"arrow.triangle.2.circlepath"_s};

} // namespace

class StatusItemArtworkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreCrisp_data();
    void linesAreCrisp();
    void everySymbolIsDrawn_data();
    void everySymbolIsDrawn();
    void colourIsTheCallers();
    void pictureFileIsDrawnToo();
    void unreadableDataIsNothing();
    void themedDrawingIsPreferred();
    void themedDrawingsHaveNoEdgeWhereTheyAreTinted_data() { everySymbolIsDrawn_data(); }
    void themedDrawingsHaveNoEdgeWhereTheyAreTinted();
    void edgedPictureIsSeenOnDarkAndOnLight_data() { everySymbolIsDrawn_data(); }
    void edgedPictureIsSeenOnDarkAndOnLight();
};

void StatusItemArtworkTest::linesAreCrisp_data()
{
    QTest::addColumn<int>("extent");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("live");
    QTest::newRow("16") << 16 << 0 << 16;
    QTest::newRow("18") << 18 << 1 << 16;
    QTest::newRow("22") << 22 << 3 << 16;
    QTest::newRow("24") << 24 << 4 << 16;
    QTest::newRow("28") << 28 << 2 << 24;
    QTest::newRow("44") << 44 << 6 << 32;
    QTest::newRow("48") << 48 << 8 << 32;
}

void StatusItemArtworkTest::linesAreCrisp()
{
    QFETCH(const int, extent);
    QFETCH(const int, first);
    QFETCH(const int, live);
    const QImage image = StatusItemArtwork({}).render({u"frame"_s, frame, {}}, extent, Qt::black);
    QCOMPARE(image.size(), QSize(extent, extent));
    const int width = live / 8;
    for (int x = 0; x < extent; ++x) {
        const int inside = x - first;
        const bool isLine =
            (inside >= 0 && inside < width) || (inside >= live - width && inside < live);
        QCOMPARE(qAlpha(image.pixel(x, extent / 2)), isLine ? 255 : 0);
    }
}

void StatusItemArtworkTest::everySymbolIsDrawn_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : symbols) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void StatusItemArtworkTest::everySymbolIsDrawn()
{
    QFETCH(const QString, name);
    const StatusItemImage symbol = systemSymbol(name, u"said"_s);
    QVERIFY(!symbol.data.isEmpty());
    const QImage image = StatusItemArtwork({}).render(symbol, 22, Qt::white);
    int covered = 0;
    int clear = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            covered += qAlpha(image.pixel(x, y)) == 255;
            clear += qAlpha(image.pixel(x, y)) == 0;
        }
    }
    QVERIFY2(covered > 40, qPrintable(QString::number(covered)));
    QVERIFY2(clear > 200, qPrintable(QString::number(clear)));
}

void StatusItemArtworkTest::colourIsTheCallers()
{
    const QImage image = StatusItemArtwork({}).render({u"frame"_s, frame, {}}, 16, QColor(9, 8, 7));
    QCOMPARE(image.pixelColor(0, 0), QColor(9, 8, 7));
}

void StatusItemArtworkTest::pictureFileIsDrawnToo()
{
    QFile file(QStringLiteral(VELLORA_RESOURCES "/Vellora_Vellora.bundle/menubar_icon.png"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const StatusItemImage picture{u"menubar_icon"_s, file.readAll(), {}};
    const QImage image = StatusItemArtwork({}).render(picture, 18, Qt::red);
    QCOMPARE(image.pixelColor(1, 5), QColor(Qt::red));
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
}

void StatusItemArtworkTest::unreadableDataIsNothing()
{
    const StatusItemArtwork artwork{QString()};
    QVERIFY(artwork.render({u"x"_s, {}, {}}, 22, Qt::black).isNull());
    QVERIFY(artwork.render({u"x"_s, "<svg", {}}, 22, Qt::black).isNull());
    QVERIFY(artwork.render({u"x"_s, "\x89PNG\r\n\x1a\n", {}}, 22, Qt::black).isNull());
}

void StatusItemArtworkTest::themedDrawingIsPreferred()
{
    const QTemporaryDir folder;
    const StatusItemImage image{u"a.b"_s, "no picture at all", {}};
    const StatusItemArtwork artwork(folder.path(), u"org.example.Test"_s);
    QCOMPARE(artwork.iconName(image), QString());
    QVERIFY(QDir(folder.path()).mkpath(u"hicolor/symbolic/apps"_s));
    QFile file(folder.filePath(u"hicolor/symbolic/apps/org.example.Test-a-b-symbolic.svg"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(frame);
    file.close();
    QCOMPARE(artwork.iconName(image), u"org.example.Test-a-b-symbolic"_s);
    QCOMPARE(qAlpha(artwork.render(image, 16, Qt::black).pixel(0, 0)), 255);
}

void StatusItemArtworkTest::themedDrawingsHaveNoEdgeWhereTheyAreTinted()
{
    QFETCH(const QString, name);
    const StatusItemImage symbol = systemSymbol(name, {});
    const StatusItemArtwork themed(QStringLiteral(VELLORA_ICON_THEME), u"org.vellora.Vellora"_s);
    QVERIFY(!themed.iconName(symbol).isEmpty());
    QCOMPARE(themed.render(symbol, 22, Qt::red), StatusItemArtwork({}).render(symbol, 22, Qt::red));
}

void StatusItemArtworkTest::edgedPictureIsSeenOnDarkAndOnLight()
{
    QFETCH(const QString, name);
    const StatusItemImage symbol = systemSymbol(name, {});
    for (const int extent : {16, 22, 48}) {
        const QImage image = StatusItemArtwork({}).renderEdged(symbol, extent);
        QCOMPARE(image.size(), QSize(extent, extent));
        int light = 0;
        int dark = 0;
        for (int y = 0; y < extent; ++y) {
            for (int x = 0; x < extent; ++x) {
                const QColor colour = image.pixelColor(x, y);
                light += colour.alpha() > 200 && colour.lightness() > 200;
                dark += colour.alpha() > 200 && colour.lightness() < 90;
            }
        }
        // A tenth of the picture at least is of each.
        QVERIFY2(light * 10 > extent * extent, qPrintable(QString::number(light)));
        QVERIFY2(dark * 10 > extent * extent, qPrintable(QString::number(dark)));
    }
    QVERIFY(StatusItemArtwork({}).renderEdged({u"x"_s, "<svg", {}}, 22).isNull());
}

QTEST_MAIN(StatusItemArtworkTest)
#include "StatusItemArtworkTest.moc"
