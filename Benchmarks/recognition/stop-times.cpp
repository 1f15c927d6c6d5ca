// SPDX-License-Identifier: MIT
//
// stop-times [--rounds N] IMAGE…: reads every image N times (20) and stops that at random moments.
// Prints a line per image: how long the whole takes, and how long it took from the asking to the
// end, in milliseconds of processor time of all threads and by the clock. Ends with 1 if one took
// more than 50 ms of work.

#include "TextRecognition/TesseractTextRecognizer.h"

#include <QCoreApplication>
#include <QImage>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <random>
#include <stop_token>
#include <thread>
#include <vector>

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;
using Clock = std::chrono::steady_clock;

/// What stopping may take, in milliseconds of work.
constexpr double most = 50;

double workNow()
{
    return double(std::clock()) * 1e3 / CLOCKS_PER_SEC;
}

TextRecognitionRequest accurateRequest(std::stop_token stop)
{
    TextRecognitionRequest request;
    request.recognitionLevel = RecognitionLevel::Accurate;
    request.usesLanguageCorrection = true;
    request.automaticallyDetectsLanguage = true;
    request.stop = std::move(stop);
    return request;
}

struct StopTimes
{
    std::vector<double> work;
    std::vector<double> clock;
};

/// One recognition that is stopped `after` its start, unless it has ended by then.
void stopOnce(TextRecognizer &recognizer, const QImage &image, Milliseconds after, StopTimes &times)
{
    std::stop_source source;
    double work = 0;
    Clock::time_point ended;
    std::thread reading([&] {
        TextRecognitionRequest request = accurateRequest(source.get_token());
        recognizer.perform(request, image);
        work = workNow();
        ended = Clock::now();
    });
    std::this_thread::sleep_for(after);
    const Clock::time_point asked = Clock::now();
    const double before = workNow();
    source.request_stop();
    reading.join();
    if (ended > asked) {
        times.work.push_back(work - before);
        times.clock.push_back(Milliseconds(ended - asked).count());
    }
}

double middleOf(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

double largestOf(const std::vector<double> &values)
{
    return values.empty() ? 0 : *std::ranges::max_element(values);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int rounds = 20;
    int first = 1;
    if (argc > 2 && std::strcmp(argv[1], "--rounds") == 0) {
        rounds = std::atoi(argv[2]);
        first = 3;
    }
    TesseractTextRecognizer recognizer;
    std::mt19937 random(1);
    bool isSoon = true;
    std::printf("whole  stops  work: median  slowest  clock: median  slowest  (ms)\n");
    for (int i = first; i < argc; ++i) {
        const QImage image(QString::fromLocal8Bit(argv[i]));
        if (image.isNull()) {
            std::fprintf(stderr, "stop-times: %s: no picture\n", argv[i]);
            return 2;
        }
        const Clock::time_point began = Clock::now();
        TextRecognitionRequest whole = accurateRequest({});
        recognizer.perform(whole, image);
        const Milliseconds taken = Clock::now() - began;
        std::uniform_real_distribution<double> moment(0, taken.count());
        StopTimes times;
        for (int round = 0; round < rounds; ++round) {
            stopOnce(recognizer, image, Milliseconds(moment(random)), times);
        }
        isSoon = isSoon && largestOf(times.work) <= most;
        std::printf("%5.0f  %5zu  %12.1f  %7.1f  %13.1f  %7.1f  %s\n", taken.count(),
                    times.work.size(), middleOf(times.work), largestOf(times.work),
                    middleOf(times.clock), largestOf(times.clock), argv[i]);
        std::fflush(stdout);
    }
    return isSoon ? 0 : 1;
}
