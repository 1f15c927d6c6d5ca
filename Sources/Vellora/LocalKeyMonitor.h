// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;
class QWindow;

/// Sees every key press in the program's own windows before they do, for as long as it lives.
class LocalKeyMonitor : public QObject
{
    Q_OBJECT

public:
    /// Answers whether the press is swallowed. May destroy its monitor.
    using Handler = std::function<bool(const QKeyEvent &, const QWindow &)>;

    explicit LocalKeyMonitor(Handler handler);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Handler m_handler;
};
