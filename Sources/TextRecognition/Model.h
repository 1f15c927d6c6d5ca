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

/// The models in a folder of trained data, as they are now: nothing is remembered, so a model
/// installed or removed while the program runs is seen at the next question.
class ModelFolder
{
public:
    /// `path`: where the `.traineddata` files stand; empty looks in the places where Tesseract's
    /// packages put them.
    explicit ModelFolder(const QString &path = {});

    QString path() const { return m_path; }
    /// The models' names, such as "eng" or "Latin"; a script's model may stand in "script/".
    QStringList installed() const;
    bool has(const QString &model) const;
    /// Nothing if there is no such model.
    std::optional<ModelFile> file(const QString &model) const;
    /// The model's data, empty if it cannot be read. Without its dictionary a model of 90 MB is
    /// half a megabyte.
    TrainedData read(const QString &model, Dictionary dictionary) const;

private:
    QString fileOf(const QString &model) const;

    QString m_path;
};

} // namespace recognition
