// What a comparison of two screenshots of 3840x2160 costs, against the least that it could.

#include "ratio.h"
#include "shared/imagecomparison.h"
#include "shared/imagemask.h"
#include "shared/pictures/imageequality.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <random>

using namespace Morvex;

namespace {

QImage noise()
{
    std::mt19937 random(1);
    QImage image(3840, 2160, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = 0xff000000 | (random() & 0xffffff);
    }
    return image;
}

// A strict comparison with one mask, against a comparison of the bytes and one copy.
void strictComparison(benchmark::State &state)
{
    const QImage taken = noise();
    const QImage read = noise();
    ImageMask mask;
    mask.addMaskRect({ImageMask::NEGATIVE, QRect(100, 100, 300, 200), false});
    // As it comes out of the file: nobody else holds it.
    QImage expected = read.copy();
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                QImage actual = taken;
                for (QImage *image : {&actual, &expected}) {
                    normalizeTransparency(image);
                    mask.drawToImage(image);
                }
                if (!haveEqualPixels(actual, expected))
                    std::abort();
            },
            [&] {
                const QImage copy = taken.copy();
                if (std::memcmp(taken.constBits(), read.constBits(),
                                static_cast<std::size_t>(taken.sizeInBytes())) != 0 ||
                    copy.isNull())
                    std::abort();
            }));
    }
    state.counters["ratio_to_memcmp_and_copy"] = ratio.value();
}
BENCHMARK(strictComparison)->UseManualTime()->Unit(benchmark::kMillisecond);

// Two equal pictures from files that have an alpha channel but no transparent pixel, without a
// mask, against a comparison of the bytes.
void equalPictures(benchmark::State &state)
{
    const QImage taken = noise().convertToFormat(QImage::Format_ARGB32);
    const QImage read = taken.copy();
    const ImageMask mask;
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                if (!mask.leavesEqual(taken, read))
                    std::abort();
            },
            [&] {
                if (std::memcmp(taken.constBits(), read.constBits(),
                                static_cast<std::size_t>(taken.sizeInBytes())) != 0)
                    std::abort();
            }));
    }
    state.counters["ratio_to_memcmp"] = ratio.value();
}
BENCHMARK(equalPictures)->UseManualTime()->Unit(benchmark::kMillisecond);

// Against one pass over the bytes of both.
void correlation(benchmark::State &state)
{
    const QImage a = noise();
    const QImage b = a.copy();
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] { benchmark::DoNotOptimize(ImageComparison::normalizedCorrelation(a, b)); },
            [&] {
                benchmark::DoNotOptimize(std::memcmp(a.constBits(), b.constBits(),
                                                     static_cast<std::size_t>(a.sizeInBytes())));
            }));
    }
    state.counters["ratio_to_one_pass"] = ratio.value();
}
BENCHMARK(correlation)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
