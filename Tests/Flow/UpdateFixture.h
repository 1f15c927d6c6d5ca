// SPDX-License-Identifier: MIT
#pragma once

#include "Support/FakePlatform.h"
#include "Updater.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include <memory>

/// An updater over a fake source of updates, as it is after the program's start.
class UpdateFixture : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();

protected:
    FakeUpdateSource &source() { return m_platform->updateSource; }

    /// The window, while it is seen.
    static QDialog *window();
    /// The visible button with this text, without its mnemonic; null when there is none.
    static QPushButton *button(const QString &text);
    /// Every visible text that is no button's.
    static QStringList texts();
    static QStringList buttons();

    static Update newVersion();
    static UpdateResult available(const Update &update = newVersion());
    static UpdateResult ended(UpdateResult::Kind kind);
    static UpdateResult failed(UpdateProblem problem, const QString &details = {},
                               const QString &command = {});

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<Updater> m_updater;
};
