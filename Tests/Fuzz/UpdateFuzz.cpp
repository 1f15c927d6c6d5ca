// SPDX-License-Identifier: MIT
// Texts of a package's source, which PackageKit hands on.

#include "ForeignText.h"
#include "FuzzInput.h"
#include "Platform/PackageKit/PackageKitAnswer.h"

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const qsizetype limit = input.byte();
    PackageKitTransaction::Outcome outcome;
    outcome.end = static_cast<PackageKitTransaction::End>(input.byte() % 4);
    outcome.exit = input.byte();
    outcome.error = input.byte();
    if (const auto id = PackageId::parse(input.text())) {
        id->isFromFile();
        require(!id->name.contains(u';') && !id->version.contains(u';'), "parts are parts");
    }
    outcome.message = input.text();
    packageKitFailure(outcome, u"update"_s);

    const QString text = QString::fromUtf8(input.rest());
    const QString shown = foreignText(text, limit);
    const QString line = foreignLine(text, limit);
    require(shown.size() <= limit + 1 && line.size() <= limit + 1, "a text keeps to its limit");
    require(!line.contains(u'\n') && !line.contains(QChar::LineSeparator), "a line is a line");
    for (const QChar each : shown) {
        require(each.category() != QChar::Other_Control || each == u'\n' || each == u'\t',
                "no control characters are shown");
        // Those that embed and override (U+202A to U+202E), and that isolate (U+2066 to U+2069).
        require((each < QChar(0x202A) || each > QChar(0x202E)) &&
                    (each < QChar(0x2066) || each > QChar(0x2069)),
                "nothing turns the direction of what follows");
    }
    return 0;
}
