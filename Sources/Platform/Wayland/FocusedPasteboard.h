// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Pasteboard.h"

#include <QMimeData>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>

class QWindow;

/// Tells whenever it is asked what there is.
class AskedMimeData : public QMimeData
{
    Q_OBJECT

public:
    QStringList formats() const override;

Q_SIGNALS:
    void asked() const;
};

/// The clipboard on a desktop that takes it from the program with the keyboard alone. Where none of
/// our windows has that, one of a single, transparent point asks for it, for a moment.
///
/// On Xwayland the clipboard is X11's, and the compositor hands it on. KWin does so only with what
/// is copied while it takes an X11 window for the active one, and may copy what Wayland programs
/// have into X11's, over ours, when one becomes it. So the moment lasts until the compositor has
/// asked what there is, and the text is copied again, where that takes too long or it was copied
/// over.
class FocusedPasteboard : public QObject, public Pasteboard
{
public:
    FocusedPasteboard();
    ~FocusedPasteboard() override;

    void clearContents() override;
    void setString(const QString &text) override;

private:
    void askForKeyboard();
    void copyWhenFocused();
    void copy();
    void followFocus();
    void copyAgainWhenLost();
    void copyAgain();
    void finish();

    const bool m_isHandedOn;
    /// What waits for the keyboard, or to be handed on.
    std::optional<QString> m_text;
    /// Whether that was copied at least once.
    bool m_isCopied = false;
    std::unique_ptr<QWindow> m_window;
    /// What Qt was given last. QtWayland 6.4 never deletes that.
    QPointer<QMimeData> m_data;
    QTimer m_patience;
    int m_triesLeft = 0;
};
