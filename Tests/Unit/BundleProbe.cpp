// SPDX-License-Identifier: MIT
#include "BundleExtension.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <thread>
#include <vector>

/// Prints where the program's resources are found, from wherever this executable lies; with the
/// argument "module" where the build left them, and with "threads" whether all threads find the
/// same.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().contains(QStringLiteral("module"))) {
        std::printf("%s\n", qUtf8Printable(module().bundlePath()));
        return 0;
    }
    if (application.arguments().contains(QStringLiteral("threads"))) {
        std::array<const Bundle *, 8> found{};
        std::vector<std::thread> threads;
        for (const Bundle *&each : found) {
            threads.emplace_back([&each] { each = &velloraResources(); });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        const bool isOne = std::all_of(found.begin(), found.end(),
                                       [&](const Bundle *each) { return each == found[0]; });
        std::printf("%s\n%s\n", qUtf8Printable(found[0]->bundlePath()), isOne ? "same" : "another");
        return 0;
    }
    const Bundle &first = velloraResources();
    const Bundle &second = velloraResources();
    std::printf("%s\n%s\n", qUtf8Printable(first.bundlePath()),
                &first == &second ? "same" : "another");
    return 0;
}
