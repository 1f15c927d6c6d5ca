// SPDX-License-Identifier: MIT
#include "Languages.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace recognition {

namespace {

struct Language
{
    QLatin1StringView tag;
    QLatin1StringView model;
    Script script;
};

/// Models without a tag (the vertical one, those of whole scripts) help others and are not
/// listed. English leads the Latin ones: short words read alike in several languages.
constexpr std::array languages{
    Language{"ar-SA"_L1, "arabic"_L1, Script::Arabic},
    Language{"ars-SA"_L1, "arabic"_L1, Script::Arabic},
    Language{"en-US"_L1, "eng"_L1, Script::Latin},
    Language{"fr-FR"_L1, "fra"_L1, Script::Latin},
    Language{"de-DE"_L1, "deu"_L1, Script::Latin},
    Language{"es-ES"_L1, "spa"_L1, Script::Latin},
    Language{"it-IT"_L1, "ita"_L1, Script::Latin},
    Language{"pt-BR"_L1, "por"_L1, Script::Latin},
    Language{"ru-RU"_L1, "rus"_L1, Script::Cyrillic},
    Language{"zh-Hans"_L1, "chi_sim"_L1, Script::SimplifiedHan},
    Language{"zh-Hant"_L1, "chi_tra"_L1, Script::TraditionalHan},
    Language{"ja-JP"_L1, "jpn"_L1, Script::Japanese},
    Language{"ko-KR"_L1, "kor"_L1, Script::Korean},
    Language{"tr-TR"_L1, "tur"_L1, Script::Latin},
    Language{"nl-NL"_L1, "nld"_L1, Script::Latin},
};

} // namespace

Languages::Languages(const QStringList &installedModels)
{
    for (const Language &language : languages) {
        if (installedModels.contains(language.model) && !m_models.contains(language.model)) {
            m_models.append(language.model);
        }
    }
}

QStringList Languages::tags() const
{
    QStringList tags;
    for (const Language &language : languages) {
        if (m_models.contains(language.model)) {
            tags.append(language.tag);
        }
    }
    return tags;
}

Languages Languages::restrictedTo(const QStringList &tags) const
{
    QStringList wanted;
    for (const Language &language : languages) {
        if (tags.contains(language.tag) && m_models.contains(language.model)) {
            wanted.append(language.model);
        }
    }
    return wanted.isEmpty() ? *this : Languages(wanted);
}

QList<Script> Languages::scripts() const
{
    QList<Script> scripts;
    for (const QString &model : m_models) {
        if (!scripts.contains(scriptOf(model))) {
            scripts.append(scriptOf(model));
        }
    }
    return scripts;
}

QStringList Languages::models(Script script) const
{
    QStringList models;
    for (const QString &model : m_models) {
        if (scriptOf(model) == script) {
            models.append(model);
        }
    }
    return models;
}

QString Languages::firstModelFor(const QStringList &locales) const
{
    const auto isWritten = [this](const QString &locale, bool byScript) {
        return [this, &locale, byScript](const Language &language) {
            return m_models.contains(language.model) &&
                   (byScript
                        ? (locale + u'-').startsWith(language.tag + u'-')
                        : locale.section(u'-', 0, 0) == QString(language.tag).section(u'-', 0, 0));
        };
    };
    for (const QString &locale : locales) {
        // Chinese by its form, where it is named.
        for (const bool byScript : {true, false}) {
            const auto found =
                std::find_if(languages.begin(), languages.end(), isWritten(locale, byScript));
            if (found != languages.end()) {
                return models(found->script).first();
            }
        }
    }
    const QStringList latin = models(Script::Latin);
    return latin.isEmpty() ? m_models.first() : latin.first();
}

Script Languages::scriptOf(const QString &model)
{
    for (const Language &language : languages) {
        if (model == language.model) {
            return language.script;
        }
    }
    return Script::Latin;
}

} // namespace recognition
