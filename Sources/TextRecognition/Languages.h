// SPDX-License-Identifier: MIT
#pragma once

#include "Model.h"
#include "Script.h"

#include <QList>
#include <QStringList>

namespace recognition {

/// What can be read with the installed models, and with which.
class Languages
{
public:
    explicit Languages(const QStringList &installedModels);

    /// The language tags that an installed model serves.
    QStringList tags() const;

    /// The same, but for scripts and languages that none of `tags` asks for. An empty list, or
    /// one without any tag known here, changes nothing.
    Languages restrictedTo(const QStringList &tags) const;

    bool isEmpty() const { return m_models.isEmpty(); }
    QList<Script> scripts() const;
    /// The models of a script: of Latin script one per language, else one. English first.
    QStringList models(Script script) const;
    /// The model that is asked first of the script of the first of `locales` ("de-AT",
    /// "zh-Hant-TW") that can be read, of Latin script if none can. There must be a language.
    QString firstModelFor(const QStringList &locales) const;
    bool has(const QString &model) const { return m_models.contains(model); }

    /// The script a model reads.
    static Script scriptOf(const QString &model);

private:
    QStringList m_models;
};

} // namespace recognition
