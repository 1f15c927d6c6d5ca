// SPDX-License-Identifier: MIT
#include "Platform/Qt/ExecRestart.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace {
/// Tells the successor that it is one, and the descriptor that it inherits; -1 for none.
const char *const successorVariable = "VELLORA_SUCCESSOR";
} // namespace

ExecRestart::ExecRestart(QString executablePath)
    : m_executablePath(std::move(executablePath))
    , m_isSuccessor(qEnvironmentVariableIsSet(successorVariable))
{
    bool isNumber = false;
    const int inherited = qEnvironmentVariableIntValue(successorVariable, &isNumber);
    // The standard streams are nobody's to hand over.
    if (isNumber && inherited > STDERR_FILENO && fcntl(inherited, F_SETFD, FD_CLOEXEC) == 0) {
        m_inherited = inherited;
    }
    qunsetenv(successorVariable);
}

ExecRestart::~ExecRestart()
{
    if (m_inherited >= 0) {
        close(m_inherited);
    }
}

bool ExecRestart::canRestart() const
{
    const QFileInfo file(m_executablePath);
    return file.isFile() && file.isExecutable();
}

std::optional<QString> ExecRestart::takeClipboardText()
{
    QFile file;
    const int inherited = std::exchange(m_inherited, -1);
    if (inherited < 0 || !file.open(inherited, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ||
        !file.seek(0)) {
        return std::nullopt;
    }
    return QString::fromUtf8(file.readAll());
}

int ExecRestart::handOver() const
{
    if (!clipboardText()) {
        return -1;
    }
    const int descriptor = memfd_create("clipboard", 0);
    QFile file;
    if (descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly)) {
        file.write(clipboardText()->toUtf8());
    }
    return descriptor;
}

void ExecRestart::startSuccessor(char *arguments[])
{
    qputenv(successorVariable, QByteArray::number(handOver()));
    execv(QFile::encodeName(m_executablePath).constData(), arguments);
}
