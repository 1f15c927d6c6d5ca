// SPDX-License-Identifier: MIT
// Lines that the edge of a selection cuts.

#include "TextRecognition/TesseractTextRecognizer.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Of the lines' type, in pixels: capitals are 12 high.
constexpr int typeSize = 16;
constexpr int baseline = 26;
constexpr int spacing = 32;
const QStringList lines{u"The first line of some text"_s, u"Second line comes after it"_s,
                        u"Some more of it ends here"_s};

QImage drawn(const QStringList &texts)
{
    QImage image(400, int(texts.size()) * spacing + 10, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(typeSize);
    painter.setFont(font);
    for (int i = 0; i < texts.size(); ++i) {
        painter.drawText(10, baseline + i * spacing, texts[i]);
    }
    return image;
}

} // namespace

class TextRecognitionCutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineCutByMoreThanAThirdIsLeftOut_data()
    {
        QTest::addColumn<int>("top");
        QTest::addColumn<int>("bottom");
        QTest::addColumn<int>("count");
        const int whole = drawn(lines).height();
        const int last = baseline + 2 * spacing;
        QTest::newRow("whole") << 0 << whole << 3;
        QTest::newRow("above, by 1 of 12 rows") << baseline - 11 << whole << 3;
        QTest::newRow("above, by 6 of 12 rows") << baseline - 6 << whole << 2;
        QTest::newRow("below, between the lines") << 0 << last + 5 << 3;
        QTest::newRow("below, by 6 of 12 rows") << 0 << last - 6 << 2;
    }

    void aLineCutByMoreThanAThirdIsLeftOut()
    {
        QFETCH(const int, top);
        QFETCH(const int, bottom);
        QFETCH(const int, count);
        const QImage image = drawn(lines).copy(0, top, 400, bottom - top);
        const QStringList found = read(image);
        QCOMPARE(found.size(), count);
        QVERIFY(found.contains(lines[1]));
    }

    void digitsThatTouchTheEdgeStay()
    {
        const QImage image = drawn({u"98 356 208"_s, u"Second line comes after it"_s});
        QCOMPARE(read(image.copy(0, baseline - 12, 400, image.height() - (baseline - 12))),
                 (QStringList{u"98 356 208"_s, u"Second line comes after it"_s}));
    }

private:
    QStringList read(const QImage &image)
    {
        TextRecognitionRequest request;
        request.automaticallyDetectsLanguage = true;
        m_recognizer.perform(request, image);
        QStringList texts;
        for (const RecognizedTextObservation &observation : request.results) {
            texts.append(observation.topCandidates(1).value(0).string);
        }
        return texts;
    }

    TesseractTextRecognizer m_recognizer;
};

QTEST_MAIN(TextRecognitionCutTest)
#include "TextRecognitionCutTest.moc"
