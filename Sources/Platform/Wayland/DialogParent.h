// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QSize>

#include <memory>

class QWindow;

/// A maximised window of ours that shows nothing and takes no clicks, for a compositor that lets no
/// window choose its place, but puts a modal dialog in the middle of its parent, whatever size the
/// parent gives itself. Of GNOME Shell (gtk_shell1). Main thread only.
class DialogParent
{
public:
    /// Whether the compositor offers what it takes. Waits for the compositor.
    static bool isOffered();

    /// Asks the compositor for a place, and waits for that.
    DialogParent();
    /// The dialog stays where it is, an ordinary window from now on.
    ~DialogParent();
    DialogParent(const DialogParent &) = delete;
    DialogParent &operator=(const DialogParent &) = delete;

    /// What panels leave of the screen that the pointer is on, in points; empty where the
    /// compositor has given no place.
    QSize freeSize() const;

    /// Covers `size`, in points, from the upper left corner of what panels leave of the screen, and
    /// becomes the parent of `dialog`, which has been shown, but not painted yet.
    void adopt(QWindow &dialog, QSize size);

private:
    struct Parts;

    std::unique_ptr<Parts> m_parts;
    QPointer<QWindow> m_dialog;
};
