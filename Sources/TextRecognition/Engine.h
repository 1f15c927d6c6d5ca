// SPDX-License-Identifier: MIT
#pragma once

#include "GreyImage.h"
#include "Model.h"
#include "Reading.h"

#include <memory>

namespace recognition {

/// How a prepared picture is looked at.
enum class ReadMode {
    /// One line, whose baseline the engine finds.
    Line,
    /// One line that fills the picture, taken as it is.
    RawLine,
    /// Columns of vertical writing.
    Vertical,
};

/// One model, loaded. Used by one thread at a time; runs on that thread alone.
class Engine
{
public:
    /// Nothing if the model is not there or not readable.
    static std::unique_ptr<Engine> load(const ModelFolder &folder, const QString &model,
                                        Dictionary dictionary);
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    Reading read(const GreyImage &picture, ReadMode mode);
    /// Whether the model's dictionary has `word`; never without one.
    bool knows(const QString &word) const;

private:
    struct Private;
    explicit Engine(std::unique_ptr<Private> p);

    std::unique_ptr<Private> m_p;
};

} // namespace recognition
