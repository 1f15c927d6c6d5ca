// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Pasteboard.h"

#include <QMimeData>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class QWindow;

/// The clipboard on a desktop that takes it from the program with the keyboard alone. Where none of
/// our windows has that, one of a single, transparent point asks for it, for a moment.
class FocusedPasteboard : public QObject, public Pasteboard
{
public:
    FocusedPasteboard();
    ~FocusedPasteboard() override;

    void clearContents() override;
    void setString(const QString &text) override;
    /// Waits five seconds for the keyboard. A text that did not get it is forgotten.
    void whenCopied(std::function<void(bool)> done) override;
    std::optional<QString> ownString() const override;

private:
    void copyWhenFocused();
    void end(bool isCopied);

    /// What waits for the keyboard.
    std::optional<QString> m_text;
    std::unique_ptr<QWindow> m_window;
    std::function<void(bool)> m_done;
    QTimer m_patience;
    /// What Qt was given last. QtWayland 6.4 never deletes that.
    QPointer<QMimeData> m_data;
};
