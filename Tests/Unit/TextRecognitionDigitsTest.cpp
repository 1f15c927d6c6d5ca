// SPDX-License-Identifier: MIT
// Numbers in Arabic-Indic digits, told by the shapes of their glyphs.

#include "TextRecognition/IndicDigits.h"
#include "TextRecognition/LineImage.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

/// Prepares `text` as it is on a screen, from right to left, with letters `pixels` high.
GreyImage preparedLine(const QString &text, const QString &family, int pixels)
{
    QFont font(family);
    font.setPixelSize(pixels);
    QImage image(QFontMetrics(font).horizontalAdvance(text) + 40, 3 * pixels, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setLayoutDirection(Qt::RightToLeft);
    painter.drawText(image.rect().adjusted(20, 0, -20, 0), Qt::AlignCenter | Qt::TextSingleLine,
                     text);
    painter.end();
    const GreyImage page = greyImage(image);
    const std::vector<TextLine> lines = findLines(findMarks(page));
    return lines.size() == 1 ? lineImage(page, lines.front()).picture : GreyImage();
}

/// The unmistakable numbers in a drawn line, from the left.
QStringList numbersIn(const QString &text, const QString &family, int pixels)
{
    QStringList numbers;
    for (const IndicNumber &number :
         indicNumbers(preparedLine(text, family, pixels), preparedLetterHeight)) {
        if (number.isUnmistakable()) {
            numbers.append(number.text);
        }
    }
    return numbers;
}

const QStringList families{u"DejaVu Sans"_s, u"Noto Sans Arabic"_s, u"Noto Kufi Arabic"_s};

} // namespace

class TextRecognitionDigitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersAreWrittenFromTheRight_data()
    {
        QTest::addColumn<QString>("seen");
        QTest::addColumn<QString>("written");
        QTest::newRow("digits") << u"١٢٣"_s << u"١٢٣"_s;
        QTest::newRow("per cent") << u"(٪٩١)"_s << u"(٩١٪)"_s;
        QTest::newRow("hyphens") << u"١٦-٠٤-٢٠٠٧"_s << u"٢٠٠٧-٠٤-١٦"_s;
        QTest::newRow("slashes") << u"[١٦/٤/٢٠٠٧]"_s << u"[١٦/٤/٢٠٠٧]"_s;
        QTest::newRow("time") << u"١٣:٢٢"_s << u"١٣:٢٢"_s;
        QTest::newRow("full stop") << u".٤.٥"_s << u"٤.٥."_s;
        QTest::newRow("nothing") << u""_s << u""_s;
    }

    void numbersAreWrittenFromTheRight()
    {
        QFETCH(QString, seen);
        QFETCH(QString, written);
        QCOMPARE(writtenNumber(seen), written);
    }

    void numbersAreRead_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("number");
        for (const QString &family : families) {
            for (const QString &number :
                 {u"٠١٢٣٤"_s, u"٥٦٧٨٩"_s, u"٩٨٪"_s, u"(٤٦٪)"_s, u"٢٠٠٦-٠٤-١٣"_s, u"٢٨/٣/٢٠١٤"_s,
                  u"[٣/٢٤]"_s, u"١٢:٤٣"_s}) {
                QTest::addRow("%s %s", qPrintable(family), qPrintable(number)) << family << number;
            }
        }
    }

    void numbersAreRead()
    {
        QFETCH(QString, family);
        QFETCH(QString, number);
        if (QFontInfo(QFont(family)).family() != family) {
            QSKIP("needs the font");
        }
        for (const int pixels : {14, 18, 24}) {
            QCOMPARE(numbersIn(u"عدد الملفات "_s + number, family, pixels), QStringList{number});
        }
    }

    void otherWritingIsNone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << u"إدارة الأدوات والإعدادات"_s;
        QTest::newRow("letters apart") << u"دار وزارة أو رأى داود"_s;
        QTest::newRow("European number") << u"عدد الملفات 24680"_s;
        QTest::newRow("European date") << u"تاريخ 2013-05-17"_s;
        QTest::newRow("Latin") << u"نافذة Volume VII"_s;
    }

    void otherWritingIsNone()
    {
        QFETCH(QString, text);
        for (const QString &family : families) {
            for (const int pixels : {14, 18, 24}) {
                QCOMPARE(numbersIn(text, family, pixels), QStringList());
            }
        }
    }

    void thereIsNoneInNothing()
    {
        QVERIFY(indicNumbers(GreyImage(), preparedLetterHeight).empty());
        QVERIFY(indicNumbers(GreyImage(60, 40, 255), preparedLetterHeight).empty());
        QVERIFY(indicNumbers(GreyImage(60, 40, 0), preparedLetterHeight).empty());
    }
};

QTEST_MAIN(TextRecognitionDigitsTest)
#include "TextRecognitionDigitsTest.moc"
