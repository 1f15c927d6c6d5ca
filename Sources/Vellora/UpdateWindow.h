// SPDX-License-Identifier: MIT
#pragma once

#include "SoftwareUpdate.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/// The window of an update: shows the stage it is in and offers what can be done next. An ordinary
/// window, which waits for nobody. Closing it dismisses what it shows.
class UpdateWindow : public QDialog
{
    Q_OBJECT

public:
    /// `update` outlives the window.
    explicit UpdateWindow(SoftwareUpdate &update);

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QWidget *makeTexts();
    QWidget *makeCommandRow();
    QWidget *makeButtons();
    QPushButton *addButton(QWidget *row, const QString &text);

    void render();
    void renderProgress();
    void renderButtons();
    void focusOn(QPushButton *button);
    void copyCommand();

    SoftwareUpdate &m_update;
    SoftwareUpdate::Stage m_shownStage = SoftwareUpdate::Stage::Idle;
    QLabel *m_heading = nullptr;
    QLabel *m_explanation = nullptr;
    QLabel *m_activity = nullptr;
    QProgressBar *m_progress = nullptr;
    QPlainTextEdit *m_details = nullptr;
    QWidget *m_commandRow = nullptr;
    QLineEdit *m_command = nullptr;
    QPlainTextEdit *m_notes = nullptr;
    QLabel *m_changes = nullptr;
    QPushButton *m_copy = nullptr;
    QPushButton *m_cancel = nullptr;
    QPushButton *m_later = nullptr;
    QPushButton *m_install = nullptr;
    QPushButton *m_tryAgain = nullptr;
    QPushButton *m_close = nullptr;
    QPushButton *m_restart = nullptr;
};
