// SPDX-License-Identifier: MIT
#include "Model.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

constexpr auto suffix = ".traineddata"_L1;

/// Where distributions put Tesseract's data, newest layout first.
constexpr std::array tesseractFolders{
    "/usr/share/tesseract-ocr/5/tessdata"_L1, "/usr/share/tesseract-ocr/4.00/tessdata"_L1,
    "/usr/share/tessdata"_L1, "/usr/local/share/tessdata"_L1, "/usr/share/tesseract/tessdata"_L1};

/// Models of our own kind, below a folder of data.
constexpr auto ownFolder = "/vellora/models"_L1;

/// What the user put somewhere comes before what was installed, and our own before others'.
QStringList defaultFolders()
{
    QStringList folders{QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        ownFolder};
    if (QCoreApplication::instance()) {
        folders +=
            QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share"_L1) + ownFolder;
    }
    for (const QLatin1StringView folder : tesseractFolders) {
        folders += folder;
    }
    return folders;
}

} // namespace

ModelFolder::ModelFolder(const QString &path)
    : m_paths(path.isEmpty() ? defaultFolders() : QStringList{path})
{
}

QStringList ModelFolder::installed() const
{
    QStringList models;
    for (const QString &path : m_paths) {
        for (const QString &folder : {path, path + "/script"_L1}) {
            const QStringList files = QDir(folder).entryList({u"*.traineddata"_s}, QDir::Files);
            for (const QString &file : files) {
                const QString model = file.chopped(suffix.size());
                if (!models.contains(model)) {
                    models.append(model);
                }
            }
        }
    }
    return models;
}

QString ModelFolder::fileOf(const QString &model) const
{
    for (const QString &path : m_paths) {
        for (const QString &folder : {path, path + "/script"_L1}) {
            QString file = folder + u'/' + model + suffix;
            if (QFile::exists(file)) {
                return file;
            }
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
