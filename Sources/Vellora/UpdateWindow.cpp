// SPDX-License-Identifier: MIT
#include "UpdateWindow.h"

#include "AppIcon.h"
#include "Platform/Platform.h"
#include "UpdateTexts.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <initializer_list>

namespace {
// In points.
constexpr int margin = 20;
constexpr int spacing = 12;
constexpr int textWidth = 400;
constexpr int notesHeight = 160;
/// Five lines or so: with a message of any length the buttons below it stay on the screen.
constexpr int detailsHeight = 100;
/// The heading against the text below it, as a factor of the font's size.
constexpr double headingScale = 1.2;

QLabel *makeLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    // What packages say is no markup, though it may look like some.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

/// For texts of any length from elsewhere.
QPlainTextEdit *makeReader(QWidget *parent, int height, const QString &accessibleName)
{
    auto *reader = new QPlainTextEdit(parent);
    reader->setReadOnly(true);
    reader->setTabChangesFocus(true);
    reader->setFixedHeight(height);
    reader->setAccessibleName(accessibleName);
    return reader;
}

/// Only a new text is set: that scrolls back to its beginning.
void showText(QPlainTextEdit *reader, const QString &text)
{
    if (reader->toPlainText() != text) {
        reader->setPlainText(text);
    }
    reader->setVisible(!text.isEmpty());
}

void showText(QLabel *label, const QString &text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}
} // namespace

UpdateWindow::UpdateWindow(SoftwareUpdate &update)
    : QDialog(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , m_update(update)
{
    setWindowTitle(tr("Vellora Update"));
    setWindowIcon(loadedAppIcon());
    auto *icon = new AppIconView(loadedAppIcon(), this);
    auto *content = new QHBoxLayout(this);
    content->setContentsMargins(margin, margin, margin, margin);
    content->setSpacing(spacing);
    content->setSizeConstraint(QLayout::SetFixedSize);
    content->addWidget(icon, 0, Qt::AlignTop);
    content->addWidget(makeTexts());
    connect(&m_update, &SoftwareUpdate::changed, this, &UpdateWindow::render);
    render();
}

QWidget *UpdateWindow::makeTexts()
{
    auto *texts = new QWidget(this);
    texts->setFixedWidth(textWidth);
    m_heading = makeLabel(texts);
    QFont font = m_heading->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * headingScale);
    m_heading->setFont(font);
    m_explanation = makeLabel(texts);
    m_activity = makeLabel(texts);
    m_progress = new QProgressBar(texts);
    m_progress->setAccessibleName(tr("Progress"));
    m_notes = makeReader(texts, notesHeight, tr("What is new"));
    m_changes = makeLabel(texts);
    auto *column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    for (QWidget *each : std::initializer_list<QWidget *>{m_heading, m_explanation, m_activity,
                                                          m_progress, m_notes, m_changes}) {
        column->addWidget(each);
    }
    column->addWidget(makeCommandRow());
    m_details = makeReader(texts, detailsHeight, tr("Message of the package service"));
    column->addWidget(m_details);
    column->addStretch();
    column->addWidget(makeButtons());
    return texts;
}

QWidget *UpdateWindow::makeCommandRow()
{
    m_commandRow = new QWidget(this);
    auto *label = makeLabel(m_commandRow);
    label->setText(tr("In a terminal, this command does the same:"));
    m_command = new QLineEdit(m_commandRow);
    m_command->setReadOnly(true);
    m_command->setAccessibleName(tr("Command"));
    // A command is written from left to right in every language.
    m_command->setLayoutDirection(Qt::LeftToRight);
    m_copy = addButton(m_commandRow, tr("C&opy"));
    m_copy->setAccessibleName(tr("Copy the command"));
    connect(m_copy, &QPushButton::clicked, this, &UpdateWindow::copyCommand);
    auto *line = new QHBoxLayout;
    line->addWidget(m_command);
    line->addWidget(m_copy);
    auto *rows = new QVBoxLayout(m_commandRow);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(label);
    rows->addLayout(line);
    return m_commandRow;
}

QWidget *UpdateWindow::makeButtons()
{
    auto *row = new QWidget(this);
    m_cancel = addButton(row, tr("&Cancel"));
    m_later = addButton(row, tr("&Later"));
    m_install = addButton(row, tr("&Install"));
    m_tryAgain = addButton(row, tr("&Try Again"));
    m_close = addButton(row, tr("Clos&e"));
    m_restart = addButton(row, tr("&Restart Vellora"));
    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addStretch();
    for (QPushButton *each : {m_cancel, m_later, m_close, m_tryAgain, m_install, m_restart}) {
        line->addWidget(each);
    }
    connect(m_cancel, &QPushButton::clicked, &m_update, &SoftwareUpdate::cancel);
    connect(m_later, &QPushButton::clicked, this, &QDialog::close);
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_install, &QPushButton::clicked, &m_update, &SoftwareUpdate::install);
    connect(m_tryAgain, &QPushButton::clicked, &m_update, &SoftwareUpdate::tryAgain);
    connect(m_restart, &QPushButton::clicked, this, [] {
        Platform &platform = Platform::current();
        platform.programRestart->restart(platform.pasteboard->ownString());
    });
    return row;
}

QPushButton *UpdateWindow::addButton(QWidget *row, const QString &text)
{
    auto *button = new QPushButton(text, row);
    button->setAutoDefault(true);
    return button;
}

void UpdateWindow::render()
{
    const SoftwareUpdate::Stage stage = m_update.stage();
    if (stage == SoftwareUpdate::Stage::Idle) {
        m_shownStage = stage;
        hide();
        return;
    }
    const bool isFailure = stage == SoftwareUpdate::Stage::CouldNotLook ||
                           stage == SoftwareUpdate::Stage::CouldNotInstall;
    const bool isOffer = stage == SoftwareUpdate::Stage::Available;
    const Update &update = m_update.update();
    m_heading->setText(UpdateTexts::heading(m_update));
    showText(m_explanation, UpdateTexts::explanation(m_update));
    renderProgress();
    showText(m_details, isFailure ? m_update.failure().details : QString());
    m_command->setText(isFailure ? m_update.failure().command : QString());
    m_commandRow->setVisible(!m_command->text().isEmpty());
    showText(m_notes, isOffer ? update.notes : QString());
    showText(m_changes, isOffer ? UpdateTexts::otherChanges(update) : QString());
    renderButtons();
    // Its beginning is what tells commands apart. When a button that had the focus went, Qt gave
    // the focus to the next in the order and selected its text up to the end.
    m_command->setCursorPosition(0);
    m_shownStage = stage;
}

void UpdateWindow::renderProgress()
{
    const QString activity = UpdateTexts::activity(m_update);
    showText(m_activity, activity);
    m_progress->setVisible(!activity.isEmpty());
    const auto percentage = m_update.progress().percentage;
    // A range of nothing is a bar that only says that something goes on.
    m_progress->setRange(0, percentage ? 100 : 0);
    m_progress->setValue(percentage.value_or(0));
    m_progress->setAccessibleDescription(activity);
}

void UpdateWindow::renderButtons()
{
    using Stage = SoftwareUpdate::Stage;
    const Stage stage = m_update.stage();
    const UpdateProblem problem = m_update.failure().problem;
    const bool isFailure = stage == Stage::CouldNotLook || stage == Stage::CouldNotInstall;
    // These stay as they are however often they are tried.
    const bool isForGood =
        problem == UpdateProblem::NotFromPackage || problem == UpdateProblem::NotInstalled;
    m_cancel->setVisible(stage == Stage::Looking || stage == Stage::Installing);
    m_cancel->setEnabled(m_update.progress().canCancel);
    m_later->setVisible(stage == Stage::Available || stage == Stage::Installed);
    m_install->setVisible(stage == Stage::Available);
    m_restart->setVisible(stage == Stage::Installed);
    m_close->setVisible(stage == Stage::UpToDate || isFailure);
    m_tryAgain->setVisible(isFailure && !isForGood);
    if (stage == m_shownStage) {
        return;
    }
    switch (stage) {
    case Stage::Looking:
    case Stage::Installing:
        focusOn(m_cancel);
        break;
    case Stage::Available:
        focusOn(m_install);
        break;
    case Stage::Installed:
        focusOn(m_restart);
        break;
    case Stage::CouldNotLook:
    case Stage::CouldNotInstall:
        focusOn(isForGood ? m_close : m_tryAgain);
        break;
    case Stage::Idle:
    case Stage::UpToDate:
        focusOn(m_close);
        break;
    }
}

void UpdateWindow::focusOn(QPushButton *button)
{
    // A screen reader reads a description with what gets the focus: so it tells what happened.
    for (QPushButton *each : findChildren<QPushButton *>()) {
        each->setAccessibleDescription({});
    }
    button->setAccessibleDescription(m_heading->text() + u'\n' + m_explanation->text());
    button->setDefault(true);
    button->setFocus();
}

void UpdateWindow::copyCommand()
{
    Pasteboard &pasteboard = *Platform::current().pasteboard;
    pasteboard.clearContents();
    pasteboard.setString(m_command->text());
}

void UpdateWindow::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    // A minimized window is hidden by the desktop; its user has not answered.
    if (!event->spontaneous()) {
        m_update.dismiss();
    }
}
