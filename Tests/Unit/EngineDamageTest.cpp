// SPDX-License-Identifier: MIT
// Real models, damaged in many places: each is refused or reads something, and harms nothing. The
// sanitizers watch, and allow no allocation above 256 MB.

#include "DrawnLine.h"
#include "TextRecognition/Network/Engine.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

using Bytes = std::vector<char>;

/// The parts of a model that reading takes.
using Parts = std::array<Bytes, TrainedData::Codes + 1>;

Parts partsOf(const QString &model)
{
    Parts parts;
    const TrainedData data = ModelFolder().read(model, Dictionary::With);
    for (int part = TrainedData::Network; part <= TrainedData::Codes; ++part) {
        const std::span<const char> bytes = data.part(TrainedData::Part(part));
        parts[std::size_t(part)].assign(bytes.begin(), bytes.end());
    }
    return parts;
}

bool write(const QString &path, const Parts &parts)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const auto count = std::uint32_t(parts.size());
    file.write(reinterpret_cast<const char *>(&count), sizeof count);
    auto at = std::int64_t(sizeof count + parts.size() * sizeof(std::int64_t));
    for (const Bytes &part : parts) {
        const std::int64_t place = part.empty() ? -1 : at;
        file.write(reinterpret_cast<const char *>(&place), sizeof place);
        at += std::int64_t(part.size());
    }
    for (const Bytes &part : parts) {
        file.write(part.data(), qint64(part.size()));
    }
    return file.flush();
}

} // namespace

class EngineDamageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void damagedModelsAreHarmless_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("part");
        for (const QString &model : {u"eng"_s, u"jpn"_s}) {
            const auto row = [&model](const char *name, int part) {
                QTest::addRow("%s %s", qPrintable(model), name) << model << part;
            };
            row("network", TrainedData::Network);
            row("characters", TrainedData::Characters);
            row("codes", TrainedData::Codes);
            row("punctuation", TrainedData::Punctuation);
            row("words", TrainedData::Words);
            row("numbers", TrainedData::Numbers);
        }
    }

    void damagedModelsAreHarmless()
    {
        QFETCH(QString, model);
        QFETCH(int, part);
        if (!ModelFolder().has(model)) {
            QSKIP("needs the model");
        }
        const Parts whole = partsOf(model);
        const Bytes &bytes = whole[std::size_t(part)];
        if (bytes.empty()) {
            QSKIP("the model has no such part");
        }
        const QTemporaryDir folder;
        const ModelFolder models(folder.path());
        const QString path = folder.filePath(u"eng.traineddata"_s);
        const GreyImage line = drawnLine(u"a1 (be)"_s, u"DejaVu Sans"_s);
        QVERIFY(write(path, whole));
        const auto undamaged = Engine::load(models, u"eng"_s, Dictionary::With);
        QVERIFY(undamaged);
        QVERIFY(!undamaged->read(line).isEmpty());

        QRandomGenerator random{quint32(part)};
        constexpr int rounds = 30;
        int readings = 0;
        for (int round = 0; round < rounds; ++round) {
            Parts damaged = whole;
            Bytes &target = damaged[std::size_t(part)];
            if (round % 5 == 4) {
                target.resize(std::size_t(random.bounded(int(target.size()))));
            } else {
                // The beginning, where sizes stand, as often as all the rest.
                const auto end =
                    int(round % 2 == 0 ? target.size() : std::min<std::size_t>(target.size(), 300));
                for (int flips = 1 + random.bounded(4); flips > 0; --flips) {
                    target[std::size_t(random.bounded(end))] = char(random.bounded(256));
                }
            }
            QVERIFY(write(path, damaged));
            const auto engine = Engine::load(models, u"eng"_s, Dictionary::With);
            if (!engine) {
                continue;
            }
            const Reading reading = engine->read(line);
            engine->knows(u"be"_s);
            ++readings;
            for (const ReadWord &word : reading.words) {
                QVERIFY(word.confidence >= 0 && word.confidence <= 100);
                QVERIFY(word.box.left >= 0 && word.box.right <= line.width);
            }
        }
        qInfo("%d of %d could be loaded", readings, rounds);
    }

    void truncatedFilesAreHarmless()
    {
        if (!ModelFolder().has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"eng.traineddata"_s);
        QVERIFY(write(path, partsOf(u"eng"_s)));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const GreyImage line = drawnLine(u"a1 (be)"_s, u"DejaVu Sans"_s);
        const qint64 size = file.size();
        for (int sixteenths = 15; sixteenths >= 0; --sixteenths) {
            QVERIFY(file.resize(size * sixteenths / 16));
            const auto engine =
                Engine::load(ModelFolder(folder.path()), u"eng"_s, Dictionary::With);
            // The codes stand last.
            QVERIFY(!engine || !engine->read(line).isEmpty());
        }
    }
};

QTEST_MAIN(EngineDamageTest)
#include "EngineDamageTest.moc"
