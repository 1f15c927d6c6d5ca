// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"
#include "Platform/EventMonitor.h"

#include <QObject>
#include <QString>

#include <memory>

class LocalKeyMonitor;
class ResultPanel;

/// Shows recognized text in a small floating window below its place on the screen, until Escape
/// in it or a click outside the program. Main thread only.
class ResultPopup : public QObject
{
    Q_OBJECT

public:
    ResultPopup();
    ~ResultPopup() override;

    /// Shows `text` in place of any earlier one; `near` is the capture rectangle in global Cocoa
    /// coordinates. The window's size is the remembered one, not the text's.
    void show(const QString &text, const CocoaRect &near);

private:
    struct DeleteLater
    {
        void operator()(ResultPanel *closing) const;
    };

    void copyText();
    void windowDidResize();
    void installDismissMonitors();
    void removeDismissMonitors();
    void dismiss();
    void orderOut();

    /// The window shown now. One that was closed by its title bar stays until the next outside
    /// click or `show`.
    std::unique_ptr<ResultPanel, DeleteLater> panel;
    std::unique_ptr<EventMonitor::Monitor> outsideClickMonitor;
    std::unique_ptr<LocalKeyMonitor> escMonitor;
};
