// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Pasteboard.h"

#include <QMimeData>
#include <QObject>
#include <QPointer>
#include <QString>

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
    std::optional<QString> ownString() const override;

private:
    void copyWhenFocused();

    /// What waits for the keyboard.
    std::optional<QString> m_text;
    std::unique_ptr<QWindow> m_window;
    /// What Qt was given last. QtWayland 6.4 never deletes that.
    QPointer<QMimeData> m_data;
};
