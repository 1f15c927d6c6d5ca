// SPDX-License-Identifier: MIT
#include "TextDirection.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Which texts count as right-to-left: the first visible character alone decides.
class TextDirectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksAtTheFirstVisibleCharacter_data();
    void looksAtTheFirstVisibleCharacter();
};

void TextDirectionTest::looksAtTheFirstVisibleCharacter_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("rightToLeft");
    QTest::newRow("empty") << u""_s << false;
    QTest::newRow("blank") << u" \t\n\u00A0\u3000"_s << false;
    QTest::newRow("Arabic after blanks") << u"  مرحبا"_s << true;
    QTest::newRow("Arabic after a line end") << u"\u2028\u200Bمرحبا"_s << true;
    QTest::newRow("Latin, then Arabic") << u"Hello مرحبا"_s << false;
    QTest::newRow("a digit, then Arabic") << u"1 مرحبا"_s << false;
    QTest::newRow("Hebrew") << u"שלום"_s << true;
    QTest::newRow("first of Hebrew") << u"\u0590"_s << true;
    QTest::newRow("before Hebrew") << u"\u058F"_s << false;
    QTest::newRow("last of Arabic") << u"\u06FF"_s << true;
    QTest::newRow("Syriac") << u"\u0710"_s << false;
    QTest::newRow("Arabic Supplement") << u"\u0750"_s << true;
    QTest::newRow("Arabic Supplement's end") << u"\u077F"_s << true;
    QTest::newRow("Thaana") << u"\u0780"_s << false;
    QTest::newRow("N'Ko") << u"\u07CA"_s << false;
    QTest::newRow("Arabic Extended-A") << u"\u08A0"_s << true;
    QTest::newRow("Hebrew presentation form") << u"\uFB1D"_s << false;
    QTest::newRow("Arabic Presentation Forms-A") << u"\uFB50"_s << true;
    QTest::newRow("their end") << u"\uFDFF"_s << true;
    QTest::newRow("Arabic Presentation Forms-B") << u"\uFE70"_s << true;
    QTest::newRow("a byte order mark lies in their block") << u"\uFEFF"_s << true;
    QTest::newRow("outside the basic plane") << u"\U0001F600"_s << false;
}

void TextDirectionTest::looksAtTheFirstVisibleCharacter()
{
    QFETCH(QString, text);
    QFETCH(bool, rightToLeft);
    QCOMPARE(containsRTL(text), rightToLeft);
}

QTEST_APPLESS_MAIN(TextDirectionTest)
#include "TextDirectionTest.moc"
