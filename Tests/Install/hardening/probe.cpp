// SPDX-License-Identifier: MIT
// Does by its first argument what a hardened program does not let pass.

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {
/// Writes behind the end of a buffer whose size the compiler knows.
[[gnu::noinline]] std::size_t copied(const char *text)
{
    char buffer[16];
    std::strcpy(buffer, text);
    return std::strlen(buffer);
}

/// Writes over what lies behind an array on the stack, by steps that only the stack's own guard
/// sees.
[[gnu::noinline]] int smash(int count)
{
    volatile char array[16] = {};
    volatile char *place = array;
    for (int index = 0; index < count; ++index) {
        place[index] = 'x';
    }
    return array[0];
}
} // namespace

int main(int count, char *arguments[])
{
    const std::string what = count > 1 ? arguments[1] : "";
    if (what == "copy") {
        return copied(std::string(100, 'x').c_str()) == 100 ? 0 : 1;
    }
    if (what == "index") {
        std::vector<int> numbers(3);
        return numbers[std::size_t(count) + 1];
    }
    if (what == "stack") {
        return smash(100) == 'x' ? 0 : 1;
    }
    std::puts(__FILE__);
    return 0;
}
