// SPDX-License-Identifier: MIT
// Gives a fuzz target the files of a folder, one after the other, and what is left of each when it
// is cut off. Fails when there is none.

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main()
{
    int count = 0;
    QDirIterator files(QStringLiteral(VELLORA_CORPUS), QDir::Files);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
            return 1;
        }
        const QByteArray bytes = file.readAll();
        std::printf("%s\n", qPrintable(file.fileName()));
        std::fflush(stdout);
        const auto size = static_cast<std::size_t>(bytes.size());
        for (const std::size_t length : std::array{size, size / 2, size - 1}) {
            if (length <= size) {
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                       length);
                ++count;
            }
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
