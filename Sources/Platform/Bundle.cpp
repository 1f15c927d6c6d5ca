// SPDX-License-Identifier: MIT
#include "Platform/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
bool isReadableFolder(const QString &path)
{
    const QFileInfo info(path);
    return info.isDir() && info.isReadable() && info.isExecutable();
}
} // namespace

Bundle::Bundle(QString bundlePath, QString resourcePath)
    : m_bundlePath(std::move(bundlePath))
    , m_resourcePath(std::move(resourcePath))
{
}

Bundle Bundle::main()
{
    const QString programFolder = QCoreApplication::applicationDirPath();
    QStringList folders = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                    u"vellora"_s, QStandardPaths::LocateDirectory);
    folders.prepend(QDir::cleanPath(programFolder + u"/../share/vellora"_s));
    const auto found = std::find_if(folders.cbegin(), folders.cend(), isReadableFolder);
    return {programFolder, found != folders.cend() ? *found : QString()};
}

std::optional<Bundle> Bundle::open(const QString &path)
{
    if (!isReadableFolder(path)) {
        return std::nullopt;
    }
    return Bundle(path, path);
}

QString Bundle::path(const QString &name, const QString &type) const
{
    if (m_resourcePath.isEmpty()) {
        return {};
    }
    const QFileInfo file(QDir(m_resourcePath), name + u'.' + type);
    return file.isFile() ? file.absoluteFilePath() : QString();
}

std::optional<QString> Bundle::information(const QString &key) const
{
    const bool isMain = m_bundlePath == QCoreApplication::applicationDirPath();
    const QString version = QCoreApplication::applicationVersion();
    if (!isMain || key != u"CFBundleShortVersionString" || version.isEmpty()) {
        return std::nullopt;
    }
    return version;
}
