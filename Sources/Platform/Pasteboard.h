// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The clipboard, for as long as the program lives. Main thread only.
class Pasteboard
{
public:
    virtual ~Pasteboard() = default;

    virtual void clearContents() = 0;

    /// Makes `text` what other programs paste as plain text, to the letter.
    virtual void setString(const QString &text) = 0;

    /// Calls `done` once with whether other programs can paste the text that was set last: at once,
    /// but where the desktop makes the program wait for that. Dropped when another text is set
    /// meanwhile.
    virtual void whenCopied(std::function<void(bool)> done) { done(true); }

    /// The text that was set here, as long as it is what other programs paste.
    virtual std::optional<QString> ownString() const = 0;
};
