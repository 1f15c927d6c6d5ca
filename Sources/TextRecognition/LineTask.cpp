// SPDX-License-Identifier: MIT
#include "LineTask.h"

#include "Languages.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

/// Where to cut so that about `length` columns stay: in the middle of the widest gap near there.
int cutNear(const GreyImage &picture, int length, bool fromRight)
{
    int best = length;
    int widest = 0;
    int run = 0;
    for (int k = length * 6 / 10; k < std::min(picture.width, length * 13 / 10); ++k) {
        run = isBlankColumn(picture, fromRight ? picture.width - 1 - k : k) ? run + 1 : 0;
        if (run > widest) {
            widest = run;
            best = k - run / 2;
        }
    }
    return best;
}

GreyImage part(const GreyImage &picture, int left, int right)
{
    GreyImage result(right - left, picture.height, 255);
    for (int y = 0; y < picture.height; ++y) {
        std::memcpy(result.row(y), picture.row(y) + left, std::size_t(result.width));
    }
    return result;
}

/// What a model reads less surely than this, and what does not look like its script, is in another
/// one.
constexpr double hopeless = 60;

} // namespace

Dictionary dictionaryOf(const QString &model)
{
    return model == "Latin"_L1 ? Dictionary::Without : Dictionary::With;
}

LineTask::LineTask(const GreyImage &page, TextLine line)
    : m_line(std::move(line))
    , m_image(lineImage(page, m_line))
    , m_kinds(kindShares(shapeFeatures(m_image.picture, preparedLetterHeight)))
{
}

bool LineTask::isHopeless(Script of, const Reading &reading) const
{
    return looksUnlike(of) && reading.confidence() < hopeless;
}

std::optional<Reading> LineTask::known(const QString &model) const
{
    const std::lock_guard lock(*m_mutex);
    const auto found = m_readings.constFind(model);
    return found != m_readings.constEnd() ? std::optional(*found) : std::nullopt;
}

std::optional<Reading> LineTask::knownSample(const std::tuple<QString, int, bool> &key) const
{
    const std::lock_guard lock(*m_mutex);
    const auto found = m_samples.find(key);
    return found != m_samples.end() ? std::optional(found->second) : std::nullopt;
}

void LineTask::read(const std::vector<LineTask *> &tasks, EngineCache &engines,
                    const QString &model)
{
    std::vector<LineTask *> unread;
    Engine::Pictures pictures;
    std::vector<Reading> readings;
    for (LineTask *task : tasks) {
        if (!task->known(model)) {
            unread.push_back(task);
            pictures.push_back(&task->m_image.picture);
            readings.push_back(task->readOnce(engines, model));
        }
    }
    if (const auto engine = engines.engine(model, dictionaryOf(model))) {
        readings = engine->readAgain(pictures, std::move(readings));
    }
    for (std::size_t i = 0; i < unread.size(); ++i) {
        const std::lock_guard lock(*unread[i]->m_mutex);
        unread[i]->m_readings.insert(model, readings[i]);
    }
}

Reading LineTask::read(EngineCache &engines, const QString &model)
{
    read({this}, engines, model);
    return *known(model);
}

Reading LineTask::sample(EngineCache &engines, const QString &model, int letters, bool fromRight)
{
    const GreyImage &picture = m_image.picture;
    const int length = int(letters * m_line.letterHeight * m_image.scale);
    if (picture.width * 4 < length * 5) {
        return readOnce(engines, model);
    }
    return sampleOf(engines, model, cutNear(picture, length, fromRight), fromRight);
}

void LineTask::readOnce(const std::vector<LineTask *> &tasks, EngineCache &engines,
                        const QString &model)
{
    const auto engine = engines.engine(model, dictionaryOf(model));
    if (!engine) {
        return;
    }
    std::vector<LineTask *> unread;
    Engine::Pictures pictures;
    for (LineTask *task : tasks) {
        if (!task->knownSample({model, task->m_image.picture.width, false})) {
            unread.push_back(task);
            pictures.push_back(&task->m_image.picture);
        }
    }
    const std::vector<Reading> readings = engine->read(pictures);
    for (std::size_t i = 0; i < unread.size(); ++i) {
        const std::lock_guard lock(*unread[i]->m_mutex);
        unread[i]->m_samples.emplace(std::tuple{model, pictures[i]->width, false}, readings[i]);
    }
}

Reading LineTask::readOnce(EngineCache &engines, const QString &model)
{
    return sampleOf(engines, model, m_image.picture.width, false);
}

Reading LineTask::sampleOf(EngineCache &engines, const QString &model, int length, bool fromRight)
{
    const std::tuple key{model, length, fromRight};
    if (const std::optional<Reading> found = knownSample(key)) {
        return *found;
    }
    const GreyImage &picture = m_image.picture;
    const auto engine = engines.engine(model, dictionaryOf(model));
    Reading reading =
        !engine     ? Reading{}
        : fromRight ? engine->read(part(picture, picture.width - length, picture.width))
                    : engine->read(length < picture.width ? part(picture, 0, length) : picture);
    const std::lock_guard lock(*m_mutex);
    m_samples.emplace(key, reading);
    return reading;
}

Reading LineTask::readPart(EngineCache &engines, const QString &model, int left, int right) const
{
    const auto engine = engines.engine(model, dictionaryOf(model));
    if (!engine) {
        return {};
    }
    const GreyImage picture = part(m_image.picture, left, right);
    Reading reading = engine->readAgain(picture, engine->read(picture));
    for (ReadWord &word : reading.words) {
        word.box.left += left;
        word.box.right += left;
    }
    return reading;
}

KindShares LineTask::kindsOfPart(int left, int right) const
{
    return kindShares(shapeFeatures(part(m_image.picture, left, right), preparedLetterHeight));
}

void LineTask::takeWhatIsRead()
{
    if (!best.isEmpty()) {
        return;
    }
    const auto takeSurer = [this](const Reading &reading) {
        if (reading.confidence() > best.confidence()) {
            take(reading);
        }
    };
    for (const Reading &reading : std::as_const(m_readings)) {
        takeSurer(reading);
    }
    for (const auto &[key, reading] : m_samples) {
        if (std::get<int>(key) == m_image.picture.width) {
            takeSurer(reading);
        }
    }
}

void LineTask::take(const Reading &reading)
{
    best = reading;
    script = Languages::scriptOf(reading.model);
}

} // namespace recognition
