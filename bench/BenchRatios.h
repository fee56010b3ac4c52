// Pairs of benchmarks whose time ratio is reported after the run:
// ROVANI_BENCH_RATIO(label, handle benchmark, raw benchmark, target) prints
// "label: handle/raw = R (target <= T)". Nothing is asserted: targets are
// for reading.
#ifndef ROVANI_BENCH_BENCHRATIOS_H
#define ROVANI_BENCH_BENCHRATIOS_H

#include <string>
#include <vector>

struct BenchRatio {
  std::string label;
  std::string handle;
  std::string raw;
  double target;  // 0 when there is none
};

std::vector<BenchRatio>& BenchRatios();

struct BenchRatioRegistration {
  BenchRatioRegistration(const char* label, const char* handle, const char* raw, double target) {
    BenchRatios().push_back({label, handle, raw, target});
  }
};

#define ROVANI_BENCH_CONCAT2(a, b) a##b
#define ROVANI_BENCH_CONCAT(a, b) ROVANI_BENCH_CONCAT2(a, b)
#define ROVANI_BENCH_RATIO(label, handle, raw, target)                                 \
  static BenchRatioRegistration ROVANI_BENCH_CONCAT(gBenchRatio, __LINE__)(label, handle, \
                                                                           raw, target)

#endif
