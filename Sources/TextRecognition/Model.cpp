// SPDX-License-Identifier: MIT
#include "Model.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

constexpr auto suffix = ".traineddata"_L1;

/// Where distributions put the data, newest layout first.
constexpr std::array folders{"/usr/share/tesseract-ocr/5/tessdata"_L1,
                             "/usr/share/tesseract-ocr/4.00/tessdata"_L1, "/usr/share/tessdata"_L1,
                             "/usr/local/share/tessdata"_L1, "/usr/share/tesseract/tessdata"_L1};

QString defaultFolder()
{
    for (const QLatin1StringView folder : folders) {
        if (!QDir(folder).entryList({u"*.traineddata"_s}, QDir::Files).isEmpty()) {
            return folder;
        }
    }
    return folders.front();
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

std::optional<ModelFile> ModelFolder::file(const QString &model) const
{
    const QString path = fileOf(model);
    if (path.isEmpty()) {
        return std::nullopt;
    }
    const QFileInfo info(path);
    return ModelFile{path, info.size(), info.lastModified()};
}

TrainedData ModelFolder::read(const QString &model, Dictionary dictionary) const
{
    return TrainedData::read(fileOf(model), dictionary == Dictionary::With);
}

} // namespace recognition
