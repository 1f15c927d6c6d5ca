// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>

class QPushButton;
class QTextEdit;

/// The popup's window: the text, scrolling, above a strip with the Copy button.
class ResultPanel : public QWidget
{
    Q_OBJECT

public:
    /// `contentSize` is the window's size without title bar and borders, in points.
    ResultPanel(const QString &text, QSizeF contentSize);

    /// The text as it was given, whatever the user made of it in the window.
    QString recognizedText() const { return m_recognizedText; }

    QTextEdit &textView() const { return *m_textView; }
    QPushButton &button() const { return *m_button; }

    /// Called after every change of the window's size.
    std::function<void()> windowDidResize;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QString m_recognizedText;
    QTextEdit *m_textView;
    QPushButton *m_button;
};
