// SPDX-License-Identifier: MIT
//
// vellora-read FILE…: the text in pictures, on standard output. Needs no desktop.

#include "PictureFile.h"
#include "TextRecognition/TesseractTextRecognizer.h"
#include "TextReport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <getopt.h>

using namespace Qt::StringLiterals;

namespace {

/// As grep has them: something went wrong outweighs what was found.
enum ExitStatus { TextFound = 0, NoText = 1, Trouble = 2 };

constexpr char usage[] =
    "Usage: vellora-read [--json] FILE...\n"
    "Prints the text in pictures. FILE may be \"-\" for standard input.\n"
    "\n"
    "      --json     one line of JSON per file, with every line's box and confidence\n"
    "  -h, --help     prints this\n"
    "  -V, --version  prints the version\n"
    "\n"
    "Exit status: 0 if there is text, 1 if there is none, 2 if a file could not be read.\n";

struct Options
{
    bool isJson = false;
    /// Set if there is nothing to read: the program ends with it.
    std::optional<ExitStatus> end;
};

/// Leaves the files at `argv[optind]` and behind.
Options parsed(int argc, char **argv)
{
    constexpr int json = 'j';
    const option known[] = {{"json", no_argument, nullptr, json},
                            {"help", no_argument, nullptr, 'h'},
                            {"version", no_argument, nullptr, 'V'},
                            {}};
    Options options;
    for (int next = 0; (next = getopt_long(argc, argv, "hV", known, nullptr)) != -1;) {
        switch (next) {
        case json:
            options.isJson = true;
            break;
        case 'h':
            std::fputs(usage, stdout);
            options.end = TextFound;
            return options;
        case 'V':
            std::puts("vellora-read " VELLORA_VERSION);
            options.end = TextFound;
            return options;
        default:
            // getopt has said what is wrong.
            std::fputs("Try \"vellora-read --help\".\n", stderr);
            options.end = Trouble;
            return options;
        }
    }
    if (optind == argc) {
        std::fputs(usage, stderr);
        options.end = Trouble;
    }
    return options;
}

FileReading readFile(TextRecognizer &recognizer, const char *path)
{
    FileReading reading;
    reading.file = QString::fromUtf8(path);
    try {
        const QImage image = pictureFromFile(path);
        TextRecognitionRequest request;
        request.recognitionLevel = RecognitionLevel::Accurate;
        request.usesLanguageCorrection = true;
        request.automaticallyDetectsLanguage = true;
        QElapsedTimer timer;
        timer.start();
        const std::clock_t before = std::clock();
        recognizer.perform(request, image);
        reading.milliseconds = double(timer.nsecsElapsed()) / 1e6;
        reading.processorMilliseconds = double(std::clock() - before) * 1e3 / CLOCKS_PER_SEC;
        reading.lines = request.results;
    } catch (const std::exception &error) {
        reading.error = QString::fromUtf8(error.what());
    }
    return reading;
}

void print(const FileReading &reading, bool isJson)
{
    if (!reading.error.isEmpty()) {
        std::fprintf(stderr, "vellora-read: %s: %s\n", qUtf8Printable(reading.file),
                     qUtf8Printable(reading.error));
    }
    if (isJson) {
        std::puts(jsonLine(reading).constData());
    } else if (const QString text = reading.text(); !text.isEmpty()) {
        std::puts(qUtf8Printable(text));
    }
    // One file's answer is not kept back until the next one has been read.
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    // Text is UTF-8 wherever it goes. Qt warns on standard error where the locale says otherwise.
    qputenv("LC_ALL", "C.UTF-8");
    QCoreApplication application(argc, argv);
    // What ails a picture is told once, and a picture that can be read has no ailment.
    QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s);

    const Options options = parsed(argc, argv);
    if (options.end) {
        return *options.end;
    }

    TesseractTextRecognizer recognizer;
    bool isWarm = false;
    bool hasText = false;
    bool hasTrouble = false;
    for (int i = optind; i < argc; ++i) {
        FileReading reading = readFile(recognizer, argv[i]);
        reading.isWarm = isWarm;
        isWarm = isWarm || reading.error.isEmpty();
        hasText = hasText || !reading.text().isEmpty();
        hasTrouble = hasTrouble || !reading.error.isEmpty();
        print(reading, options.isJson);
        if (std::ferror(stdout)) {
            std::fprintf(stderr, "vellora-read: cannot write: %s\n", std::strerror(errno));
            return Trouble;
        }
    }
    return hasTrouble ? Trouble : hasText ? TextFound : NoText;
}
