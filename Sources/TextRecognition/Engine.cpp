// SPDX-License-Identifier: MIT
#include "Engine.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <mutex>
#include <omp.h>

namespace recognition {

struct Engine::Private
{
    QString model;
    tesseract::TessBaseAPI api;
};

namespace {

/// The library opens an OpenMP team for every layer of its network, which makes a line slower,
/// not faster, on any number of cores. With no active level allowed the calling thread does all.
void stayOnThisThread()
{
    omp_set_max_active_levels(0);
}

/// The library's remarks about small or odd pictures are of no use to anybody.
void silence(tesseract::TessBaseAPI &api)
{
    static std::once_flag once;
    std::call_once(once, [&api] { api.SetVariable("debug_file", "/dev/null"); });
}

tesseract::PageSegMode segmentation(ReadMode mode)
{
    switch (mode) {
    case ReadMode::Line:
        return tesseract::PSM_SINGLE_LINE;
    case ReadMode::RawLine:
        return tesseract::PSM_RAW_LINE;
    case ReadMode::Vertical:
        return tesseract::PSM_SINGLE_BLOCK_VERT_TEXT;
    }
    return tesseract::PSM_SINGLE_LINE;
}

/// Marks the words that no blank stands before. The models of languages that write without
/// blanks break lines into words all the same; only the text of the whole line tells.
void markBlanks(Reading &reading, const QString &text)
{
    qsizetype at = 0;
    for (ReadWord &word : reading.words) {
        const qsizetype found = text.indexOf(word.text, at);
        if (found < 0) {
            continue;
        }
        word.afterBlank = found == 0 || text.at(found - 1).isSpace();
        at = found + word.text.size();
    }
}

} // namespace

Engine::Engine(std::unique_ptr<Private> p)
    : m_p(std::move(p))
{
}

Engine::~Engine() = default;

std::unique_ptr<Engine> Engine::load(const ModelFolder &folder, const QString &model,
                                     Dictionary dictionary)
{
    stayOnThisThread();
    const std::vector<char> data = folder.read(model, dictionary);
    if (data.empty()) {
        return nullptr;
    }
    auto p = std::make_unique<Private>();
    p->model = model;
    // The name keys the library's own cache of word lists, shared between copies.
    if (p->api.Init(data.data(), int(data.size()), model.toUtf8().constData(),
                    tesseract::OEM_LSTM_ONLY, nullptr, 0, nullptr, nullptr, false, nullptr) != 0) {
        return nullptr;
    }
    silence(p->api);
    p->api.SetVariable("tessedit_do_invert", "0");
    return std::unique_ptr<Engine>(new Engine(std::move(p)));
}

Reading Engine::read(const GreyImage &picture, ReadMode mode)
{
    stayOnThisThread();
    Reading reading;
    reading.model = m_p->model;
    if (picture.isEmpty()) {
        return reading;
    }
    tesseract::TessBaseAPI &api = m_p->api;
    api.SetPageSegMode(segmentation(mode));
    api.SetImage(picture.pixels.data(), picture.width, picture.height, 1, picture.width);
    api.SetSourceResolution(300);
    if (api.Recognize(nullptr) == 0) {
        const std::unique_ptr<tesseract::ResultIterator> at(api.GetIterator());
        constexpr auto words = tesseract::RIL_WORD;
        for (bool more = at && !at->Empty(words); more; more = at->Next(words)) {
            const std::unique_ptr<char[]> text(at->GetUTF8Text(words));
            if (!text) {
                continue;
            }
            ReadWord word;
            word.text = QString::fromUtf8(text.get()).trimmed();
            if (word.text.isEmpty()) {
                continue;
            }
            word.confidence = at->Confidence(words);
            word.startsLine = at->IsAtBeginningOf(tesseract::RIL_TEXTLINE);
            at->BoundingBox(words, &word.box.left, &word.box.top, &word.box.right,
                            &word.box.bottom);
            reading.words.append(word);
        }
        const std::unique_ptr<char[]> text(api.GetUTF8Text());
        if (text) {
            markBlanks(reading, QString::fromUtf8(text.get()));
        }
    }
    api.Clear();
    return reading;
}

bool Engine::knows(const QString &word) const
{
    return m_p->api.IsValidWord(word.toUtf8().constData()) != 0;
}

} // namespace recognition
