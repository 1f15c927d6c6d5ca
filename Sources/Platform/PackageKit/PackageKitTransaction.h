// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantList>

#include <chrono>
#include <functional>
#include <optional>

/// One transaction of PackageKit on the system bus, from its creation to its end. Whatever answers
/// there is believed as little as possible. Main thread only.
class PackageKitTransaction : public QObject
{
    Q_OBJECT

public:
    /// What to do.
    struct Request
    {
        QString method;
        QVariantList arguments;
        /// Whether the user waits, so that they may be asked who they are.
        bool isInteractive = true;
        /// Whether lists of any age will do; else PackageKit may renew them first.
        bool takesAnyLists = true;
        /// How long PackageKit may say nothing, and how long it may take; 0 for any time.
        std::chrono::milliseconds longestSilence{0};
        std::chrono::milliseconds longestTime{0};
    };

    /// A package that the transaction names.
    struct Package
    {
        /// A number of `PackageKit::Info`, without its upper half.
        quint32 info = 0;
        /// "name;version;architecture;data".
        QString id;
    };

    /// How it ended.
    enum class End {
        Finished, ///< as PackageKit says in `exit`
        NoService,
        ServiceEnded,
        NoAnswer,
        Nonsense,
    };
    struct Outcome
    {
        End end = End::Nonsense;
        /// A number of `PackageKit::Exit`.
        quint32 exit = 0;
        /// A number of `PackageKit::Error`, with PackageKit's words.
        std::optional<quint32> error;
        QString message;
        QList<Package> packages;
        /// Release notes of the packages asked about.
        QString updateText;

        bool succeeded() const;
    };

    using ProgressHandler = UpdateSource::ProgressHandler;
    using Handler = std::function<void(const Outcome &)>;

    PackageKitTransaction(Request request, ProgressHandler progress, Handler handler);
    /// Calls off what has not ended.
    ~PackageKitTransaction() override;

    /// Begins. The handler is called once, from the event loop, and may destroy this object.
    void start();

    /// Asks PackageKit to stop, which it does where it can; the end is told as ever.
    void cancel();

private Q_SLOTS:
    void receive(const QDBusMessage &signal);
    void receiveProperties(const QDBusMessage &signal);

private:
    void create();
    void run(const QString &path);
    void send(const QString &method, const QVariantList &arguments);
    void callFailed(const QDBusMessage &reply);
    void setProperties(const QVariantMap &properties);
    void addPackage(const QVariantList &arguments);
    void addDetail(const QVariantList &arguments);
    void setError(const QVariantList &arguments);
    void setExit(const QVariantList &arguments);
    void finish(End end);

    Request m_request;
    ProgressHandler m_progressHandler;
    Handler m_handler;
    QString m_path;
    Outcome m_outcome;
    UpdateProgress m_progress;
    QTimer m_silence;
    bool m_isCancelled = false;
};
