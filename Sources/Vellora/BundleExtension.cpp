// SPDX-License-Identifier: MIT
#include "BundleExtension.h"

#include "resource_bundle_accessor.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {
Bundle findVelloraResources()
{
    const Bundle main = Bundle::main();
    // The program is one executable, so the bundle that holds its code is the main one again.
    for (const QString &folder : {main.resourcePath(), main.bundlePath(), main.resourcePath()}) {
        if (folder.isEmpty()) {
            continue;
        }
        if (const auto bundle = Bundle::open(folder + u'/' + resourceBundleName)) {
            return *bundle;
        }
    }
    return module();
}

Bundle findModule()
{
    const Bundle main = Bundle::main();
    const QString mainPath = main.bundlePath() + u'/' + resourceBundleName;
    if (const auto bundle = Bundle::open(mainPath)) {
        return *bundle;
    }
    const QString buildPath =
        QDir::cleanPath(QDir(main.bundlePath()).absoluteFilePath(resourceBundleBuildPath));
    if (const auto bundle = Bundle::open(buildPath)) {
        return *bundle;
    }
    qFatal("could not load resource bundle: from %s or %s", qUtf8Printable(mainPath),
           qUtf8Printable(buildPath));
}
} // namespace

const Bundle &velloraResources()
{
    static const Bundle bundle = findVelloraResources();
    return bundle;
}

const Bundle &module()
{
    static const Bundle bundle = findModule();
    return bundle;
}
