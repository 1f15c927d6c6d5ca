// SPDX-License-Identifier: MIT
// Texts of a portal and of the desktop, and what a portal says is a picture.

#include "FuzzInput.h"
#include "Platform/KeyTap.h"
#include "Platform/Portal/PortalPicture.h"
#include "Platform/Portal/PortalShortcut.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QUrl>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static QGuiApplication app(argc, nullptr);
    static const QTemporaryDir folder;
    FuzzInput input(data, size);
    const quint64 flags = quint64(input.byte()) << 17 & KeyFlags::mask;
    const QString keyName = input.text();
    const QString description = input.text();
    describesTrigger(description, flags, keyName);
    portalTrigger(flags, keyName);
    // An answer of another form than it should have.
    require(portalShortcuts(description).isEmpty(), "a text is no list of shortcuts");
    require(portalShortcuts(QVariantMap{{keyName, description}}).isEmpty(),
            "a map is no list of shortcuts");

    const QString path = folder.filePath(u"picture"_s);
    const QByteArray content = input.rest();
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        return 0;
    }
    file.close();
    const PortalPicture picture =
        takePortalPicture(QUrl::fromLocalFile(path).toString(), QDateTime::currentDateTime());
    require(picture.image.isNull() == !picture.problem.isEmpty(), "there is a picture or a reason");
    require(QFile::exists(path) == picture.image.isNull(),
            "what was decoded is gone, and only that");
    return 0;
}
