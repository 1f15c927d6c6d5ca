// SPDX-License-Identifier: MIT
#include "Platform/PackageKit/PackageKitTransaction.h"

#include "Platform/PackageKit/PackageKitNumbers.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.PackageKit"_s;
const QString rootPath = u"/org/freedesktop/PackageKit"_s;
const QString transactionInterface = u"org.freedesktop.PackageKit.Transaction"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

/// A transaction that names more packages than this is not read on: Debian has some 60,000, of
/// which a tenth is more than any computer updates at once.
constexpr qsizetype mostPackages = 6000;
/// In characters: what is longer is cut off again before it is shown.
constexpr qsizetype longestText = 100000;

std::optional<quint32> number(const QVariantList &arguments, qsizetype index)
{
    const QVariant value = arguments.value(index);
    return value.typeId() == QMetaType::UInt ? std::optional(value.toUInt()) : std::nullopt;
}

std::optional<QString> text(const QVariantList &arguments, qsizetype index)
{
    const QVariant value = arguments.value(index);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString().left(longestText))
                                                : std::nullopt;
}

UpdateProgress::Phase phase(quint32 status)
{
    switch (status) {
    case PackageKit::StatusWaitingForLock:
        return UpdateProgress::Phase::WaitingForOthers;
    case PackageKit::StatusWaitingForAuthentication:
        return UpdateProgress::Phase::WaitingForAuthentication;
    case PackageKit::StatusDownload:
        return UpdateProgress::Phase::Downloading;
    case PackageKit::StatusRemove:
    case PackageKit::StatusInstall:
    case PackageKit::StatusUpdate:
    case PackageKit::StatusCleanup:
    case PackageKit::StatusObsolete:
    case PackageKit::StatusTestCommit:
    case PackageKit::StatusCommit:
        return UpdateProgress::Phase::Installing;
    default:
        return UpdateProgress::Phase::Preparing;
    }
}
} // namespace

bool PackageKitTransaction::Outcome::succeeded() const
{
    return end == End::Finished && exit == PackageKit::ExitSuccess;
}

PackageKitTransaction::PackageKitTransaction(Request request, ProgressHandler progress,
                                             Handler handler)
    : m_request(std::move(request))
    , m_progressHandler(std::move(progress))
    , m_handler(std::move(handler))
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(m_request.longestSilence);
    connect(&m_silence, &QTimer::timeout, this, [this] { finish(End::NoAnswer); });
}

PackageKitTransaction::~PackageKitTransaction()
{
    if (m_handler && !m_path.isEmpty()) {
        send(u"Cancel"_s, {});
    }
}

void PackageKitTransaction::start()
{
    if (!QDBusConnection::systemBus().isConnected()) {
        // Calls of a bus that is not there are never answered.
        QTimer::singleShot(0, this, [this] { finish(End::NoService); });
        return;
    }
    if (m_request.longestSilence.count() > 0) {
        m_silence.start();
    }
    if (m_request.longestTime.count() > 0) {
        QTimer::singleShot(m_request.longestTime, this, [this] { finish(End::NoAnswer); });
    }
    // Its end takes with it whatever it was doing, without a word.
    auto *serviceEnd = new QDBusServiceWatcher(service, QDBusConnection::systemBus(),
                                               QDBusServiceWatcher::WatchForUnregistration, this);
    connect(serviceEnd, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { finish(End::ServiceEnded); });
    create();
}

void PackageKitTransaction::create()
{
    const QDBusMessage call =
        QDBusMessage::createMethodCall(service, rootPath, service, u"CreateTransaction"_s);
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError()) {
            callFailed(watcher->reply());
            return;
        }
        const QVariant path = watcher->reply().arguments().value(0);
        if (!path.canConvert<QDBusObjectPath>()) {
            finish(End::Nonsense);
            return;
        }
        run(path.value<QDBusObjectPath>().path());
    });
}

void PackageKitTransaction::run(const QString &path)
{
    if (m_isCancelled) {
        m_outcome.exit = PackageKit::ExitCancelled;
        finish(End::Finished);
        return;
    }
    m_path = path;
    QDBusConnection bus = QDBusConnection::systemBus();
    // Before the call, which may be answered before it returns.
    bus.connect(service, m_path, transactionInterface, QString(), this,
                SLOT(receive(QDBusMessage)));
    bus.connect(service, m_path, propertiesInterface, u"PropertiesChanged"_s, this,
                SLOT(receiveProperties(QDBusMessage)));
    QStringList hints{
        u"locale=%1.UTF-8"_s.arg(QLocale().name()),
        m_request.isInteractive ? u"interactive=true"_s : u"interactive=false"_s,
        m_request.isInteractive ? u"background=false"_s : u"background=true"_s,
    };
    if (m_request.takesAnyLists) {
        hints << u"cache-age=4294967295"_s;
    }
    send(u"SetHints"_s, {hints});
    send(m_request.method, m_request.arguments);
}

void PackageKitTransaction::send(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, m_path, transactionInterface, method);
    call.setArguments(arguments);
    // A transaction is no reason to start the service: it would not know of it.
    call.setAutoStartService(false);
    if (method != m_request.method) {
        QDBusConnection::systemBus().send(call);
        return;
    }
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        // What it does is told by signals. Some of its versions answer only when all is done,
        // which may take any time.
        if (watcher->isError() && watcher->error().type() != QDBusError::NoReply) {
            callFailed(watcher->reply());
        }
    });
}

void PackageKitTransaction::cancel()
{
    m_isCancelled = true;
    if (!m_path.isEmpty()) {
        send(u"Cancel"_s, {});
    }
}

void PackageKitTransaction::callFailed(const QDBusMessage &reply)
{
    const QString name = reply.errorName();
    m_outcome.message = reply.errorMessage().left(longestText);
    if (name == u"org.freedesktop.DBus.Error.NoReply" ||
        name == u"org.freedesktop.DBus.Error.Timeout" ||
        name == u"org.freedesktop.DBus.Error.TimedOut") {
        finish(End::NoAnswer);
    } else if (m_path.isEmpty()) {
        // However the bus puts it: nobody is there to make a transaction.
        finish(End::NoService);
    } else {
        m_outcome.exit = 0;
        finish(End::Finished);
    }
}

void PackageKitTransaction::receive(const QDBusMessage &signal)
{
    if (!m_handler) {
        return;
    }
    if (m_silence.isActive()) {
        m_silence.start();
    }
    const QString name = signal.member();
    const QVariantList arguments = signal.arguments();
    if (name == u"Package") {
        addPackage(arguments);
    } else if (name == u"UpdateDetail") {
        addDetail(arguments);
    } else if (name == u"ErrorCode") {
        setError(arguments);
    } else if (name == u"Finished") {
        setExit(arguments);
    }
}

void PackageKitTransaction::addPackage(const QVariantList &arguments)
{
    const auto info = number(arguments, 0);
    const auto id = text(arguments, 1);
    if (!info || !id) {
        finish(End::Nonsense);
        return;
    }
    if (m_outcome.packages.size() < mostPackages) {
        m_outcome.packages << Package{*info & PackageKit::infoMask, *id};
    }
}

void PackageKitTransaction::addDetail(const QVariantList &arguments)
{
    // After the id come six lists and numbers that tell nothing to people.
    constexpr qsizetype updateTextIndex = 7;
    // A detail without notes, or with something else in their place, leaves them empty.
    m_outcome.updateText = text(arguments, updateTextIndex).value_or(QString());
}

void PackageKitTransaction::setError(const QVariantList &arguments)
{
    const auto code = number(arguments, 0);
    const auto message = text(arguments, 1);
    if (!code || !message) {
        finish(End::Nonsense);
        return;
    }
    m_outcome.error = code;
    m_outcome.message = *message;
}

void PackageKitTransaction::setExit(const QVariantList &arguments)
{
    const auto exit = number(arguments, 0);
    if (!exit) {
        finish(End::Nonsense);
        return;
    }
    m_outcome.exit = *exit;
    finish(End::Finished);
}

void PackageKitTransaction::receiveProperties(const QDBusMessage &signal)
{
    if (!m_handler) {
        return;
    }
    if (m_silence.isActive()) {
        m_silence.start();
    }
    const QVariant changed = signal.arguments().value(1);
    if (changed.canConvert<QDBusArgument>()) {
        const auto argument = changed.value<QDBusArgument>();
        if (argument.currentSignature() == u"a{sv}") {
            setProperties(qdbus_cast<QVariantMap>(argument));
        }
    }
}

void PackageKitTransaction::setProperties(const QVariantMap &properties)
{
    if (const auto status = number({properties.value(u"Status"_s)}, 0)) {
        m_progress.phase = phase(*status);
    }
    if (const auto percentage = number({properties.value(u"Percentage"_s)}, 0)) {
        m_progress.percentage = *percentage <= PackageKit::wholePercentage
                                    ? std::optional(static_cast<int>(*percentage))
                                    : std::nullopt;
    }
    if (const QVariant allowed = properties.value(u"AllowCancel"_s);
        allowed.typeId() == QMetaType::Bool) {
        m_progress.canCancel = allowed.toBool();
    }
    UpdateProgress told = m_progress;
    // Before, it starts over for every step that only PackageKit knows of.
    if (told.phase != UpdateProgress::Phase::Downloading &&
        told.phase != UpdateProgress::Phase::Installing) {
        told.percentage.reset();
    }
    if (const ProgressHandler tell = m_progressHandler) {
        tell(told);
    }
}

void PackageKitTransaction::finish(End end)
{
    if (!m_handler) {
        return;
    }
    if (end != End::Finished && !m_path.isEmpty()) {
        // Nobody will hear what it does from here on.
        send(u"Cancel"_s, {});
    }
    m_silence.stop();
    m_outcome.end = end;
    const Handler handler = std::exchange(m_handler, nullptr);
    handler(Outcome(std::move(m_outcome)));
}
