#include "support/Ratio.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace vellumry::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// A turn of a short run lasts about this long, well above what the clock can tell apart.
constexpr double shortestTurn = 0.001;

double secondsOf(const Variant& variant, int runs)
{
    if (variant.before)
        variant.before();
    const auto start = Clock::now();
    for (int i = 0; i < runs; ++i)
        variant.run();
    return std::chrono::duration<double>(Clock::now() - start).count() / runs;
}

int runsPerTurn(const Variant& variant)
{
    const double once = secondsOf(variant, 1); // also warms up
    if (variant.before)
        return 1;
    return std::clamp(static_cast<int>(shortestTurn / std::max(once, 1e-9)), 1, 10000);
}

std::string timeText(double seconds)
{
    char text[32];
    if (seconds < 1e-3)
        std::snprintf(text, sizeof text, "%.1f us", seconds * 1e6);
    else
        std::snprintf(text, sizeof text, "%.2f ms", seconds * 1e3);
    return text;
}

std::string byteText(double bytes)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f MB", bytes / 1e6);
    return text;
}

/// A ratio below a half as a fraction: "1/40".
std::string ratioText(double ratio)
{
    char text[32];
    if (ratio < 0.5)
        std::snprintf(text, sizeof text, "1/%.0f", 1 / std::max(ratio, 1e-12));
    else
        std::snprintf(text, sizeof text, "%.2fx", ratio);
    return text;
}

void print(const Ratio& row, const std::string& value)
{
    const double ratio = row.value / row.limitValue;
    std::printf("%s, N=%d: %s, %s of %s", row.what.c_str(), row.count, value.c_str(),
                ratioText(ratio).c_str(), row.limit.c_str());
    if (row.goal)
        std::printf(" (goal %s) %s", ratioText(*row.goal).c_str(),
                    ratio <= *row.goal ? "ok" : "MISSED");
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::vector<double> medianTimes(const std::vector<Variant>& variants, int repetitions)
{
    std::vector<int> runs;
    runs.reserve(variants.size());
    for (const Variant& variant : variants)
        runs.push_back(runsPerTurn(variant));

    std::vector<std::vector<double>> times(variants.size());
    for (size_t turn = 0; turn < static_cast<size_t>(repetitions); ++turn) {
        for (size_t i = 0; i < variants.size(); ++i) {
            const size_t which = (turn + i) % variants.size();
            times[which].push_back(secondsOf(variants[which], runs[which]));
        }
    }
    std::vector<double> medians;
    medians.reserve(times.size());
    for (const auto& each : times)
        medians.push_back(median(each));
    return medians;
}

void printTimes(const Ratio& ratio)
{
    print(ratio, timeText(ratio.value));
}

void printBytes(const Ratio& ratio)
{
    print(ratio, byteText(ratio.value));
}

} // namespace vellumry::bench
