// SPDX-License-Identifier: MIT
#include "Platform/Qt/ExecRestart.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>
#include <utility>

ExecRestart::ExecRestart(QString executablePath)
    : m_executablePath(std::move(executablePath))
{
}

bool ExecRestart::canRestart() const
{
    const QFileInfo file(m_executablePath);
    return file.isFile() && file.isExecutable();
}

void ExecRestart::startSuccessor(char *arguments[])
{
    execv(QFile::encodeName(m_executablePath).constData(), arguments);
}
