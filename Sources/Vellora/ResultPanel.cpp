// SPDX-License-Identifier: MIT
#include "ResultPanel.h"

#include "AppIcon.h"
#include "TextDirection.h"

#include <QPushButton>
#include <QTextDocument>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {
// In points, from the lower right corner of the window's content.
constexpr int buttonStripHeight = 40;
constexpr QSize buttonSize(90, 28);
constexpr int buttonFromRight = 100;
constexpr int buttonFromBottom = 8;
constexpr int textInset = 8;
constexpr int textSize = 14;
} // namespace

ResultPanel::ResultPanel(const QString &text, QSizeF contentSize)
    : m_recognizedText(text)
    , m_textView(new QTextEdit(this))
    , m_button(new QPushButton(tr("Copy"), this))
{
    setWindowTitle(tr("Vellora — Recognized Text"));
    setWindowIcon(loadedAppIcon());

    QFont font = m_textView->font();
    font.setPixelSize(textSize);
    m_textView->setFont(font);
    m_textView->setFrameShape(QFrame::NoFrame);
    m_textView->setAcceptRichText(false);
    m_textView->setTabChangesFocus(true);
    m_textView->setAccessibleName(tr("Recognized text"));
    m_textView->document()->setDocumentMargin(textInset);
    if (containsRTL(text)) {
        QTextOption option = m_textView->document()->defaultTextOption();
        option.setTextDirection(Qt::RightToLeft);
        option.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        m_textView->document()->setDefaultTextOption(option);
    }
    m_textView->setPlainText(text);

    // Return presses the button while it has the keyboard, as Space does.
    m_button->setAutoDefault(true);
    resize(contentSize.toSize());
}

void ResultPanel::resizeEvent(QResizeEvent *)
{
    m_textView->setGeometry(0, 0, width(), height() - buttonStripHeight);
    m_button->setGeometry(
        QRect(QPoint(width() - buttonFromRight, height() - buttonFromBottom - buttonSize.height()),
              buttonSize));
    if (windowDidResize) {
        windowDidResize();
    }
}
