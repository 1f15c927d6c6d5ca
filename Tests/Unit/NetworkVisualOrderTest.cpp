// SPDX-License-Identifier: MIT
// Words as they stand on the screen, from the left, in the order in which they are read.

#include "TextRecognition/Network/VisualOrder.h"

#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

class NetworkVisualOrderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreBroughtIntoOrder_data()
    {
        QTest::addColumn<QStringList>("seen");
        QTest::addColumn<QStringList>("read");
        QTest::newRow("Latin") << QStringList{u"one"_s, u"(two)"_s, u"3%"_s}
                               << QStringList{u"one"_s, u"(two)"_s, u"3%"_s};
        QTest::newRow("nothing") << QStringList{} << QStringList{};
        QTest::newRow("numbers alone")
            << QStringList{u"12"_s, u"-"_s, u"13"_s} << QStringList{u"12"_s, u"-"_s, u"13"_s};
        // Letters stand from the left, as the eye meets them.
        QTest::newRow("Arabic") << QStringList{u"بتك"_s, u"باب"_s}
                                << QStringList{u"باب"_s, u"كتب"_s};
        QTest::newRow("Hebrew") << QStringList{u"םלוע"_s, u"םולש"_s}
                                << QStringList{u"שלום"_s, u"עולם"_s};
        QTest::newRow("Latin words in Arabic")
            << QStringList{u"بتك"_s, u"USB"_s, u"port"_s, u"باب"_s}
            << QStringList{u"باب"_s, u"USB"_s, u"port"_s, u"كتب"_s};
        QTest::newRow("Arabic words in Latin")
            << QStringList{u"see"_s, u"بتك"_s, u"باب"_s, u"here"_s}
            << QStringList{u"see"_s, u"باب"_s, u"كتب"_s, u"here"_s};
        QTest::newRow("number in Arabic") << QStringList{u"بتك"_s, u"125"_s, u"باب"_s}
                                          << QStringList{u"باب"_s, u"125"_s, u"كتب"_s};
        // Characters, not looks: the one on the left closes.
        QTest::newRow("brackets") << QStringList{u")بتك("_s, u"باب"_s}
                                  << QStringList{u"باب"_s, u"(كتب)"_s};
        QTest::newRow("number within a word")
            << QStringList{u"12.5:باب"_s} << QStringList{u"باب:12.5"_s};
        QTest::newRow("per cent belongs to its number")
            << QStringList{u"50%:باب"_s} << QStringList{u"باب:50%"_s};
        QTest::newRow("per cent left of its number")
            << QStringList{u"%50"_s, u"باب"_s} << QStringList{u"باب"_s, u"50%"_s};
        QTest::newRow("Arabic-Indic digits")
            << QStringList{u"٢٠٢٤/٣/١٢"_s, u"باب"_s} << QStringList{u"باب"_s, u"٢٠٢٤/٣/١٢"_s};
        QTest::newRow("Arabic-Indic per cent")
            << QStringList{u"٪٥٠"_s, u"باب"_s} << QStringList{u"باب"_s, u"٥٠٪"_s};
        QTest::newRow("full stop behind a Latin word")
            << QStringList{u".HTTP"_s, u"باب"_s} << QStringList{u"باب"_s, u"HTTP."_s};
        QTest::newRow("Latin words in brackets")
            << QStringList{u")Firefox"_s, u"ESR("_s, u"فلملا"_s}
            << QStringList{u"الملف"_s, u"(Firefox"_s, u"ESR)"_s};
        QTest::newRow("signs that belong to a Latin word")
            << QStringList{u"++C"_s, u"باب"_s} << QStringList{u"باب"_s, u"C++"_s};
        QTest::newRow("Latin name with a number")
            << QStringList{u"بتك"_s, u"Python"_s, u"3.12"_s, u"باب"_s}
            << QStringList{u"باب"_s, u"Python"_s, u"3.12"_s, u"كتب"_s};
        QTest::newRow("number with a unit")
            << QStringList{u"ms"_s, u"12"_s, u"باب"_s} << QStringList{u"باب"_s, u"12"_s, u"ms"_s};
        QTest::newRow("neutral word at the left end")
            << QStringList{u"..."_s, u"باب"_s} << QStringList{u"باب"_s, u"..."_s};
    }

    void wordsAreBroughtIntoOrder()
    {
        QFETCH(QStringList, seen);
        QFETCH(QStringList, read);
        QList<QString> words = seen;
        const QList<int> order = toReadingOrder(words);
        QStringList found;
        for (const int i : order) {
            found.append(words[i]);
        }
        QCOMPARE(found, read);
    }

    void everyWordIsReadOnce()
    {
        // All lines of up to five words of four kinds.
        const QStringList kinds{u"word"_s, u"باب"_s, u"12"_s, u"-"_s};
        for (int count = 1; count <= 5; ++count) {
            for (int line = 0; line < 1 << (2 * count); ++line) {
                QList<QString> words;
                for (int i = 0; i < count; ++i) {
                    words.append(kinds[line >> (2 * i) & 3]);
                }
                QList<int> order = toReadingOrder(words);
                std::sort(order.begin(), order.end());
                QCOMPARE(order.size(), count);
                for (int i = 0; i < count; ++i) {
                    QCOMPARE(order[i], i);
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(NetworkVisualOrderTest)
#include "NetworkVisualOrderTest.moc"
