// SPDX-License-Identifier: MIT
// Any file of settings can be read, and be written to without losing what could be read of it.

#include "FuzzInput.h"
#include "Platform/CocoaGeometry.h"
#include "Platform/UserDefaults.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {
const QStringList keys{u"outputMode"_s,   u"shutterSound"_s,    u"launchAtLogin"_s,
                       u"hotkeyString"_s, u"resultPopupSize"_s, u"settingsFrame"_s};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static QCoreApplication app(argc, nullptr);
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"vellora.ini"_s);
    const QByteArray content = FuzzInput(data, size).rest();
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            return 0;
        }
    }
    QHash<QString, std::optional<QString>> read;
    {
        UserDefaults defaults(path);
        for (const QString &key : keys) {
            const auto text = defaults.string(key);
            read.insert(key, text);
            defaults.boolean(key);
            const CocoaSize one = sizeFromString(text.value_or(QString()));
            const CocoaRect other = rectFromString(text.value_or(QString()));
            require(one.width == one.width && one.height == one.height, "a size is a number");
            require(other.size.width == other.size.width, "a frame is a number");
        }
        require(defaults.set(u"written"_s, true), "the file can be written");
    }
    const UserDefaults again(path);
    require(again.boolean(u"written"_s), "what was written is read");
    for (const QString &key : keys) {
        require(again.string(key) == read.value(key), "what was read before is read again");
    }
    // As the next input finds it.
    QFile::remove(path);
    QFile::remove(path + u".damaged"_s);
    return 0;
}
