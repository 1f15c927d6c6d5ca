// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

#include <functional>

/// The application object. Handlers of events know nothing of the memory's end: where one meets it,
/// what it was doing is given up, and the program goes on.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    /// Called on the main thread when memory has ended there or on another thread with an event
    /// loop.
    std::function<void()> memoryDidEnd;

    bool notify(QObject *receiver, QEvent *event) override;

private:
    void tellMemoryDidEnd();
};
