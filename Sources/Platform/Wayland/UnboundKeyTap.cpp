// SPDX-License-Identifier: MIT
#include "Platform/Wayland/UnboundKeyTap.h"

#include "Platform/CaptureCommand.h"

#include <QCoreApplication>

namespace {
/// The command is its argument.
const char *const problemText = QT_TRANSLATE_NOOP(
    "UnboundKeyTap",
    "This desktop lets programs bind no keys. Bind one yourself, in its settings, to: %1");
} // namespace

UnboundKeyTap::UnboundKeyTap(SystemLog &log)
    : m_log(log)
{
}

std::unique_ptr<KeyTap::Tap> UnboundKeyTap::createTap(const KeyCombination & /*combination*/,
                                                      Callback /*callback*/)
{
    const QString command = captureCommand();
    m_log.log(QString::fromUtf8(problemText).arg(command));
    setProblem(QCoreApplication::translate("UnboundKeyTap", problemText).arg(command));
    return nullptr;
}
