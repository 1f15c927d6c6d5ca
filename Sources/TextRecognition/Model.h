// SPDX-License-Identifier: MIT
#pragma once

#include "Network/TrainedData.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace recognition {

/// Whether a model is loaded with its word lists, which make it read better and cost most of its
/// memory and time to load.
enum class Dictionary { With, Without };

/// A model's file as it is at one time.
struct ModelFile
{
    QString path;
    qint64 size = 0;
    QDateTime modified;

    friend bool operator==(const ModelFile &, const ModelFile &) = default;
};

/// The models in folders of trained data, as they are now: nothing is remembered, so a model
/// installed or removed while the program runs is seen at the next question.
class ModelFolder
{
public:
    /// `path`: where the `.traineddata` files stand. Empty looks into "vellora/models" in the
    /// user's data folder, "../share/vellora/models" from the program, and where distributions put
    /// the data of Tesseract. Of two models of one name the earlier folder's is read.
    explicit ModelFolder(const QString &path = {});

    /// The folder that comes first, for models that the user adds.
    QString path() const { return m_paths.constFirst(); }
    /// The models' names, such as "eng" or "Latin"; a script's model may stand in "script/".
    QStringList installed() const;
    bool has(const QString &model) const;
    /// Nothing if there is no such model.
    std::optional<ModelFile> file(const QString &model) const;
    /// The model's data, empty if it cannot be read. Without its dictionary a model of 90 MB is
    /// half a megabyte.
    TrainedData read(const QString &model, Dictionary dictionary) const;

    /// The model's file; empty if there is none.
    QString fileOf(const QString &model) const;

private:
    QStringList m_paths;
};

} // namespace recognition
