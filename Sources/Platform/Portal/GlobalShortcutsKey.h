// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/GivenKeys.h"
#include "Platform/KeyTap.h"
#include "Platform/Portal/PortalRequest.h"
#include "Platform/SystemLog.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QPointer>

#include <chrono>
#include <memory>

/// One combination that the GlobalShortcuts portal keeps for us, as the shortcut "capture" of a
/// session of its own. Which keys the user presses for it is between the desktop and the user; ours
/// are a proposal.
class GlobalShortcutsKey : public QObject, public KeyTap::Tap
{
    Q_OBJECT

public:
    /// `given` and `log`, which outlives the object, are told what the user presses, where that is
    /// not ours. A portal that takes longer than `sessionTimeLimit` for what needs no user is given
    /// up on.
    GlobalShortcutsKey(KeyTap::Callback callback, GivenKeys &given, SystemLog &log,
                       std::chrono::milliseconds sessionTimeLimit = std::chrono::seconds(10));
    /// The portal frees the key when it gets to it, before whatever else we ask of it.
    ~GlobalShortcutsKey() override;

    /// False for a key without a name in the layout in use. Otherwise the user is asked, or was
    /// once.
    bool setCombination(const KeyCombination &combination) override;

private Q_SLOTS:
    void activated(const QDBusObjectPath &session, const QString &shortcut, qulonglong time,
                   const QVariantMap &options);
    void shortcutsChanged(const QDBusMessage &message);
    void closed();

private:
    void openSession();
    void closeSession();
    void bindShortcut();
    void ask(PortalRequest::Call call, std::chrono::milliseconds limit,
             std::function<void(const QVariantMap &)> whenGranted);
    void tellDescription(const QString &description);
    void end(End end);

    KeyTap::Callback m_callback;
    QPointer<GivenKeys> m_given;
    SystemLog &m_log;
    std::chrono::milliseconds m_sessionTimeLimit;
    KeyCombination m_combination;
    /// XKB's name of the key.
    QString m_keyName;
    /// Empty until the portal has told it.
    QString m_session;
    std::unique_ptr<PortalRequest> m_request;
    /// A portal that is started anew knows nothing of us.
    QDBusServiceWatcher m_restarts;
    /// What the portal told last.
    QString m_description;
};
