// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayKeyBinding.h"

#include "Platform/Sway/SwayBindingRecord.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Sway compares the locks too, under which a shortcut has to work.
const QList<QStringList> &lockVariants()
{
    static const QList<QStringList> variants{{}, {u"Lock"_s}, {u"Mod2"_s}, {u"Lock"_s, u"Mod2"_s}};
    return variants;
}

QString nextCommand()
{
    static int number = 0;
    return u"nop vellora %1 %2"_s.arg(QCoreApplication::applicationPid()).arg(++number);
}

/// Whether the configuration that sway uses binds the combination.
bool isTaken(SwayConnection &connection, const SwayKey &key)
{
    const QString config = connection.request(SwayConnection::Request::GetConfig)
                               .object()
                               .value("config"_L1)
                               .toString();
    return swayConfigBinds(config, key);
}

void unbindAll(SwayConnection &connection, const SwayKey &key)
{
    for (const QStringList &locks : lockVariants()) {
        // Where there is none, after a reload, sway answers with an error that concerns nobody.
        connection.run(u"unbindcode %1"_s.arg(swayKeyText(key, locks)));
    }
    SwayBindingRecord::clear();
}
} // namespace

SwayKeyBinding::SwayKeyBinding(KeyTap::Callback callback)
    : m_callback(std::move(callback))
    , m_command(nextCommand())
    , m_events({SwayEvents::Type::Binding, SwayEvents::Type::Workspace},
               [this](SwayEvents::Type type, const QJsonObject &event) { handle(type, event); })
{
}

SwayKeyBinding::~SwayKeyBinding()
{
    unbind();
}

bool SwayKeyBinding::setCombination(const KeyCombination &combination)
{
    unbind();
    m_combination = combination;
    return m_events.isUsable() && bind();
}

bool SwayKeyBinding::bind()
{
    const WaylandKeyboard keyboard;
    const auto keycode = keyboard.keycode(m_combination.keyCode);
    if (!keycode) {
        return false;
    }
    SwayKey key{m_combination.flags & KeyFlags::mask, *keycode, {}};
    for (const QString &name : keyboard.keysymNames(m_combination.keyCode)) {
        key.keysyms << name.toLower();
    }
    if (isTaken(m_connection, key)) {
        return false;
    }
    m_bound = key;
    SwayBindingRecord::write(key);
    const bool isBound = std::ranges::all_of(lockVariants(), [&](const QStringList &locks) {
        // By the key's place: what a layout prints on it does not matter.
        return m_connection.run(
            u"bindcode --no-warn %1 %2"_s.arg(swayKeyText(key, locks), m_command));
    });
    if (!isBound) {
        unbind();
    }
    return isBound;
}

void SwayKeyBinding::unbind()
{
    if (const auto bound = std::exchange(m_bound, std::nullopt)) {
        unbindAll(m_connection, *bound);
    }
}

void SwayKeyBinding::removeLeftover()
{
    const auto left = SwayBindingRecord::read();
    if (!left) {
        return;
    }
    SwayConnection connection;
    if (isTaken(connection, *left)) {
        // The configuration was read anew meanwhile: the binding is the user's.
        SwayBindingRecord::clear();
        return;
    }
    unbindAll(connection, *left);
}

void SwayKeyBinding::handle(SwayEvents::Type type, const QJsonObject &event)
{
    const QString change = event.value("change"_L1).toString();
    if (type == SwayEvents::Type::Workspace && change == u"reload") {
        m_bound.reset();
        // The configuration that was read anew may have the combination itself.
        if (!bind() && onEnd) {
            onEnd(End::Failed);
        }
    } else if (type == SwayEvents::Type::Binding &&
               event.value("binding"_L1).toObject().value("command"_L1).toString() == m_command) {
        m_callback(m_combination);
    }
}
