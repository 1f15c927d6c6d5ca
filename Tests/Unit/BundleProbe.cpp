// SPDX-License-Identifier: MIT
#include "BundleExtension.h"

#include <QCoreApplication>

#include <cstdio>

/// Prints where the program's resources are found, from wherever this executable lies.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Bundle &first = velloraResources();
    const Bundle &second = velloraResources();
    std::printf("%s\n%s\n", qUtf8Printable(first.bundlePath()),
                &first == &second ? "same" : "another");
    return 0;
}
