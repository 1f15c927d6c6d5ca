// SPDX-License-Identifier: MIT
// Calls of the menu and of the status item, as any program on the session bus can make them.

#include "FuzzInput.h"
#include "Platform/Freedesktop/MenuAdaptor.h"
#include "Platform/Freedesktop/StatusNotifierAdaptor.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {
std::unique_ptr<QMenu> makeMenu()
{
    auto menu = std::make_unique<QMenu>();
    menu->addAction(u"Capture Text"_s);
    menu->addSeparator();
    menu->addAction(u"Settings…"_s, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    return menu;
}

QList<int> numbers(FuzzInput &input)
{
    QList<int> result;
    for (int count = input.byte() % 8; count > 0; --count) {
        result << static_cast<int>(input.number());
    }
    return result;
}

QStringList texts(FuzzInput &input)
{
    QStringList result;
    for (int count = input.byte() % 4; count > 0; --count) {
        result << input.text();
    }
    return result;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 0;
    static QApplication app(argc, nullptr);
    FuzzInput input(data, size);
    QObject item;
    QObject menuObject;
    int clicks = 0;
    auto *notifier =
        new StatusNotifierAdaptor(&item, [&clicks](StatusItemEvent::Type) { ++clicks; });
    auto *menu = new MenuAdaptor(&menuObject, makeMenu, std::make_shared<PanelMenu>());
    int activations = 0;
    while (!input.isAtEnd()) {
        switch (input.byte() % 10) {
        case 0: {
            MenuLayout layout;
            const int parent = static_cast<int>(input.number());
            const int depth = static_cast<int>(input.number());
            menu->GetLayout(parent, depth, texts(input), layout);
            require(layout.children.size() <= 3, "there are three entries");
            break;
        }
        case 1: {
            const QList<int> ids = numbers(input);
            require(menu->GetGroupProperties(ids, texts(input)).size() <= 4,
                    "no entry is told of twice");
            break;
        }
        case 2: {
            const int id = static_cast<int>(input.number());
            menu->GetProperty(id, input.text());
            break;
        }
        case 3: {
            const int id = static_cast<int>(input.number());
            menu->Event(id, input.text(), QDBusVariant(input.text()), input.number());
            break;
        }
        case 4: {
            QList<MenuEvent> events;
            for (const int id : numbers(input)) {
                events << MenuEvent{id, input.text(), QDBusVariant(input.text()), input.number()};
            }
            menu->EventGroup(events);
            break;
        }
        case 5:
            menu->AboutToShow(static_cast<int>(input.number()));
            break;
        case 6: {
            QList<int> errors;
            menu->AboutToShowGroup(numbers(input), errors);
            break;
        }
        case 7:
            ++activations;
            notifier->Activate(static_cast<int>(input.number()), static_cast<int>(input.number()));
            break;
        case 8:
            ++activations;
            notifier->ContextMenu(static_cast<int>(input.number()),
                                  static_cast<int>(input.number()));
            break;
        default:
            notifier->Scroll(static_cast<int>(input.number()), input.text());
            notifier->ProvideXdgActivationToken(input.text());
        }
    }
    require(clicks <= activations, "nothing but a click is a click");
    return 0;
}
