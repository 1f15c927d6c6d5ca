// SPDX-License-Identifier: MIT
// Any text is a shortcut, and what is written of one reads the same again.

#include "FuzzInput.h"
#include "HotkeyString.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(FuzzInput(data, size).rest());
    const KeyCombination combination = HotkeyString::parsed(text);
    require(HotkeyString::keyName(combination.keyCode).has_value(), "the key has a name");
    if (const auto written = HotkeyString::written(combination)) {
        require(HotkeyString::parsed(*written) == combination, "what is written reads the same");
    }
    HotkeyString::displayString(text);
    HotkeyString::spoken(text);
    return 0;
}
