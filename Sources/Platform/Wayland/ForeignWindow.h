// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>

class QWindow;

/// A window of ours under a name by which other programs can refer to it, such as the portal, whose
/// questions then belong to it. The name holds as long as this object. Main thread only.
class ForeignWindow
{
public:
    /// Asks the compositor for a name, and waits for that. `window` is on the screen, as an
    /// ordinary window.
    explicit ForeignWindow(QWindow &window);
    ~ForeignWindow();
    ForeignWindow(const ForeignWindow &) = delete;
    ForeignWindow &operator=(const ForeignWindow &) = delete;

    /// As portals want it: "wayland:" and the compositor's handle, or "x11:" and the window's
    /// number in hexadecimal. Empty where the window system names no windows.
    QString identifier() const { return m_identifier; }

private:
    struct Export;

    std::unique_ptr<Export> m_export;
    QString m_identifier;
};
