// SPDX-License-Identifier: MIT
#include "Platform/KDE/GlobalAccelKey.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/KDE/GlobalAccelKeys.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

/// A sequence of up to four keys as kglobalaccel writes it; 0 where there is none.
struct GlobalAccelSequence
{
    std::array<int, 4> keys{};
};
Q_DECLARE_METATYPE(GlobalAccelSequence)

QDBusArgument &operator<<(QDBusArgument &argument, const GlobalAccelSequence &sequence)
{
    argument.beginStructure();
    argument.beginArray(QMetaType::fromType<int>());
    for (const int key : sequence.keys) {
        argument << key;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, GlobalAccelSequence &sequence)
{
    argument.beginStructure();
    argument.beginArray();
    for (std::size_t i = 0; !argument.atEnd(); ++i) {
        int key = 0;
        argument >> key;
        if (i < sequence.keys.size()) {
            sequence.keys[i] = key;
        }
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

namespace {
const QString service = u"org.kde.kglobalaccel"_s;
const QString actionName = u"capture"_s;
/// Short enough for a person who changes the shortcut.
constexpr int answerTimeLimit = 2000;

enum Flag : uint {
    Present = 2,       ///< the program runs
    NoAutoloading = 4, ///< what is given counts, not what was once stored for the action
};

QString componentName()
{
    return QGuiApplication::desktopFileName();
}

/// The action's name and its component's, then both as people read them.
QStringList actionId()
{
    return {componentName(), actionName, QCoreApplication::applicationName(),
            QCoreApplication::translate("GlobalAccelKey", "Capture Text")};
}

QDBusMessage ask(const QString &method, const QVariantList &arguments)
{
    const auto bus = sessionBus();
    if (!bus) {
        return {};
    }
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/kglobalaccel"_s,
                                                       u"org.kde.KGlobalAccel"_s, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return bus->call(call, QDBus::Block, answerTimeLimit);
}
} // namespace

GlobalAccelKey::GlobalAccelKey(KeyTap::Callback callback)
    : m_callback(std::move(callback))
{
    qDBusRegisterMetaType<GlobalAccelSequence>();
    qDBusRegisterMetaType<QList<GlobalAccelSequence>>();
    auto bus = sessionBus();
    if (!bus) {
        return;
    }
    // From any object: a component's path is made of its name by rules of its own.
    bus->connect(service, QString(), u"org.kde.kglobalaccel.Component"_s,
                 u"globalShortcutPressed"_s, this,
                 SLOT(globalShortcutPressed(QString, QString, qlonglong)));
    m_restarts.setConnection(*bus);
    m_restarts.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    m_restarts.addWatchedService(service);
    connect(&m_restarts, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (m_isBound) {
            bind();
        }
    });
}

GlobalAccelKey::~GlobalAccelKey()
{
    unbind();
}

bool GlobalAccelKey::setCombination(const KeyCombination &combination)
{
    unbind();
    m_combination = combination;
    return bind();
}

bool GlobalAccelKey::bind()
{
    const QList<int> keys = globalAccelKeys(m_combination, WaylandKeyboard());
    if (keys.isEmpty()) {
        return false;
    }
    QList<GlobalAccelSequence> sequences;
    for (const int key : keys) {
        sequences << GlobalAccelSequence{{key}};
    }
    ask(u"doRegister"_s, {actionId()});
    m_isBound = true;
    const QDBusMessage answer =
        ask(u"setShortcutKeys"_s,
            {actionId(), QVariant::fromValue(sequences), QVariant(uint(Present | NoAutoloading))});
    const auto granted =
        answer.arguments().isEmpty()
            ? QList<GlobalAccelSequence>()
            : qdbus_cast<QList<GlobalAccelSequence>>(answer.arguments().constFirst());
    const bool isGranted = std::ranges::any_of(
        granted, [](const GlobalAccelSequence &each) { return each.keys[0] != 0; });
    if (!isGranted) {
        unbind();
    }
    return isGranted;
}

void GlobalAccelKey::unbind()
{
    if (std::exchange(m_isBound, false)) {
        removeLeftover();
    }
}

void GlobalAccelKey::removeLeftover()
{
    ask(u"unregister"_s, {componentName(), actionName});
}

void GlobalAccelKey::globalShortcutPressed(const QString &component, const QString &action,
                                           qlonglong /*time*/)
{
    if (m_isBound && component == componentName() && action == actionName) {
        m_callback(m_combination);
    }
}
