// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// xdg-desktop-portal's Screenshot, played on the session bus by a connection of its own, in the
/// ways that portals have. It may live on a thread of its own.
class ScreenshotPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

public:
    uint response = 0;
    QString uri;
    /// What takes the place of `uri` after each answer.
    QStringList laterUris;
    /// Whether it ends instead of answering.
    bool endsSilently = false;
    /// Whether it never answers.
    bool isSilent = false;
    /// Whether the file that it tells of is made new, as that of a real portal is.
    bool savesNow = true;
    /// As portals before 0.9 did: they made up the place of the answer, and told it first.
    bool ignoresTokens = false;
    QString parentWindow;
    QVariantMap options;
    /// Where the answers to all calls go, in their order.
    QStringList requests;

    /// Answers one of the calls, which were left unanswered.
    void answer(qsizetype number) const;

    /// Whether the bus has it now.
    bool start();
    /// Goes from the bus, as all of a portal does.
    static void end();
    /// Goes from its place; its name stays.
    static void leavePlace();

public Q_SLOTS:
    QDBusObjectPath Screenshot(const QString &parent, const QVariantMap &given);

private:
    QDBusMessage answerAt(const QString &request) const;
};
