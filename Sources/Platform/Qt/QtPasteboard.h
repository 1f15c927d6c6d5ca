// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Pasteboard.h"

/// Qt's clipboard, for desktops where a program may own the clipboard without being active.
class QtPasteboard : public Pasteboard
{
public:
    void clearContents() override;
    void setString(const QString &text) override;
    std::optional<QString> ownString() const override;
};
