// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QDBusServiceWatcher>
#include <QObject>

/// One combination that kglobalaccel keeps for us, as the action "capture" of the program. A
/// program that is killed leaves it taken until its next start removes it, or the session's end.
class GlobalAccelKey : public QObject, public KeyTap::Tap
{
    Q_OBJECT

public:
    explicit GlobalAccelKey(KeyTap::Callback callback);
    /// The key is free when this returns.
    ~GlobalAccelKey() override;

    bool setCombination(const KeyCombination &combination) override;

    /// Gives back what a program that was killed left taken; nothing where it left nothing.
    static void removeLeftover();

private Q_SLOTS:
    void globalShortcutPressed(const QString &component, const QString &action, qlonglong time);

private:
    bool bind();
    void unbind();

    KeyTap::Callback m_callback;
    KeyCombination m_combination;
    bool m_isBound = false;
    /// A KWin that is started anew knows nothing of us.
    QDBusServiceWatcher m_restarts;
};
