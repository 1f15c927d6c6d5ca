// SPDX-License-Identifier: MIT
#include "Model.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cstdint>
#include <cstring>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

constexpr auto suffix = ".traineddata"_L1;

/// Where distributions put the data, newest layout first.
constexpr std::array folders{"/usr/share/tesseract-ocr/5/tessdata"_L1,
                             "/usr/share/tesseract-ocr/4.00/tessdata"_L1, "/usr/share/tessdata"_L1,
                             "/usr/local/share/tessdata"_L1, "/usr/share/tesseract/tessdata"_L1};

/// A trained data file: a count, as many offsets (-1: absent), then the parts in order. The
/// word lists of a line recognizer are parts 18 to 20 (punctuation, words, numbers).
constexpr std::size_t firstList = 18;
constexpr std::size_t lastList = 20;

QString defaultFolder()
{
    for (const QLatin1StringView folder : folders) {
        if (!QDir(folder).entryList({u"*.traineddata"_s}, QDir::Files).isEmpty()) {
            return folder;
        }
    }
    return folders.front();
}

/// The file's parts without the word lists, or nothing if the file is not of the known form.
std::vector<char> withoutLists(QFile &file)
{
    std::uint32_t count = 0;
    if (file.read(reinterpret_cast<char *>(&count), sizeof count) != sizeof count || count < 18 ||
        count > 64) {
        return {};
    }
    std::vector<std::int64_t> offsets(count);
    const auto table = qint64(count) * qint64(sizeof(std::int64_t));
    if (file.read(reinterpret_cast<char *>(offsets.data()), table) != table) {
        return {};
    }

    std::vector<std::int64_t> newOffsets(count, -1);
    std::vector<char> data(sizeof count + std::size_t(table));
    for (std::size_t i = 0; i < count; ++i) {
        if (offsets[i] < 0 || (i >= firstList && i <= lastList)) {
            continue;
        }
        std::int64_t end = file.size();
        for (const std::int64_t other : offsets) {
            if (other > offsets[i]) {
                end = std::min(end, other);
            }
        }
        const std::int64_t length = end - offsets[i];
        if (length < 0 || end > file.size() || !file.seek(offsets[i])) {
            return {};
        }
        newOffsets[i] = std::int64_t(data.size());
        data.resize(data.size() + std::size_t(length));
        if (file.read(data.data() + newOffsets[i], length) != length) {
            return {};
        }
    }
    std::memcpy(data.data(), &count, sizeof count);
    std::memcpy(data.data() + sizeof count, newOffsets.data(), std::size_t(table));
    return data;
}

} // namespace

ModelFolder::ModelFolder(const QString &path)
    : m_path(path.isEmpty() ? defaultFolder() : path)
{
}

QStringList ModelFolder::installed() const
{
    QStringList models;
    for (const QString &folder : {m_path, m_path + "/script"_L1}) {
        const QStringList files = QDir(folder).entryList({u"*.traineddata"_s}, QDir::Files);
        for (const QString &file : files) {
            const QString model = file.chopped(suffix.size());
            if (!models.contains(model)) {
                models.append(model);
            }
        }
    }
    return models;
}

QString ModelFolder::fileOf(const QString &model) const
{
    for (const QString &folder : {m_path, m_path + "/script"_L1}) {
        QString file = folder + u'/' + model + suffix;
        if (QFile::exists(file)) {
            return file;
        }
    }
    return {};
}

bool ModelFolder::has(const QString &model) const
{
    return !fileOf(model).isEmpty();
}

std::vector<char> ModelFolder::read(const QString &model, Dictionary dictionary) const
{
    QFile file(fileOf(model));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    if (dictionary == Dictionary::Without) {
        return withoutLists(file);
    }
    std::vector<char> data(std::size_t(file.size()));
    if (file.read(data.data(), qint64(data.size())) != qint64(data.size())) {
        return {};
    }
    return data;
}

} // namespace recognition
