// SPDX-License-Identifier: MIT
#include "Platform/Portal/PermissionWindow.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace {
// In points.
constexpr int margin = 24;
constexpr int spacing = 12;
/// Lines of some fifty letters.
constexpr int textWidth = 360;

QLabel *addText(QVBoxLayout *column)
{
    auto *label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    column->addWidget(label);
    return label;
}
} // namespace

PermissionWindow::PermissionWindow()
    : QWidget(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , m_promise(
          tr("%1 reads the screen only when you capture.").arg(QCoreApplication::applicationName()))
{
    setWindowTitle(QCoreApplication::applicationName());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    QLabel *promise = addText(column);
    promise->setText(m_promise);
    QFont font = promise->font();
    font.setWeight(QFont::DemiBold);
    promise->setFont(font);
    m_text = addText(column);
    auto *buttons = new QDialogButtonBox(this);
    m_again = buttons->addButton(tr("&Ask Again"), QDialogButtonBox::AcceptRole);
    QPushButton *notNow = buttons->addButton(tr("&Not Now"), QDialogButtonBox::RejectRole);
    column->addWidget(buttons);
    connect(m_again, &QPushButton::clicked, this, &PermissionWindow::askedAgain);
    connect(notNow, &QPushButton::clicked, this, &PermissionWindow::dismissed);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            &PermissionWindow::dismissed);
    showQuestion();
}

void PermissionWindow::showQuestion()
{
    m_again->hide();
    setText(tr("Your desktop now asks whether %1 may take pictures of the screen. You can change "
               "your answer in its settings.")
                .arg(QCoreApplication::applicationName()));
}

void PermissionWindow::showUnanswered(const QString &reason)
{
    m_again->show();
    m_again->setFocus();
    const QString text = tr("Your desktop took no answer.");
    setText(reason.isEmpty() ? text : text + u' ' + reason);
}

void PermissionWindow::setText(const QString &text)
{
    m_text->setText(text);
    // What a screen reader says when the window comes to the front.
    setAccessibleDescription(m_promise + u' ' + text);
}

void PermissionWindow::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    Q_EMIT dismissed();
}
