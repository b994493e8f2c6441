// Measures an operation against the plain thing that it cannot be cheaper than, in turns and in one run, so
// that a busy machine slows both down alike. What is reported is the ratio of the medians.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace velmora {

inline double quantile(std::vector<double> values, double part) {
  const auto position =
      values.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size()));
  std::nth_element(values.begin(), position, values.end());
  return *position;
}
inline double median(std::vector<double> values) { return quantile(std::move(values), 0.5); }

template <class Action>
double microsecondsOf(int times, const Action& action) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < times; ++i) action();
  const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / times;
}

struct SideBySide {
  std::vector<double> microseconds;
  std::vector<double> plainMicroseconds;
};

/// Runs `times` of each in turn for as long as the benchmark lasts, and before each round what is not
/// measured. The benchmark must use manual time.
template <class Action, class Plain>
SideBySide runSideBySide(
    benchmark::State& state, int times, const Action& action, const Plain& plain,
    const std::function<void()>& before = [] {}) {
  SideBySide result;
  for (auto _ : state) {
    before();
    result.microseconds.push_back(microsecondsOf(times, action));
    result.plainMicroseconds.push_back(microsecondsOf(times, plain));
    state.SetIterationTime(result.microseconds.back() * times / 1e6);
  }
  return result;
}

/// The counters `us` and `plainUs` (lower quartiles) and `medianUs`; `value` is what scripts/bench.sh
/// compares with `budget`: how many times as long the operation takes, or how many microseconds longer. No
/// budget: 0.
enum class Compare { ratio, difference };
inline void report(benchmark::State& state, const SideBySide& result, Compare compare, double budget) {
  const double ours = quantile(result.microseconds, 0.25);
  const double plain = quantile(result.plainMicroseconds, 0.25);
  state.counters["us"] = ours;
  state.counters["plainUs"] = plain;
  state.counters["medianUs"] = median(result.microseconds);
  state.counters["value"] = compare == Compare::ratio ? ours / plain : ours - plain;
  if (budget > 0) state.counters["budget"] = budget;
}

}  // namespace velmora
