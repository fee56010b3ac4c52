#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>

#include "BenchRatios.h"

std::vector<BenchRatio>& BenchRatios() {
  static std::vector<BenchRatio> ratios;
  return ratios;
}

namespace {

// Console output as usual, and each run's time per iteration kept by name.
class RecordingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration && run.iterations > 0)
        times_[run.benchmark_name()] = run.GetAdjustedRealTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }
  const std::map<std::string, double>& Times() const { return times_; }

 private:
  std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  benchmark::Initialize(&argc, argv);
  RecordingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);

  std::printf("\nRatios (handle time / raw Foundation time):\n");
  for (const BenchRatio& ratio : BenchRatios()) {
    auto handle = reporter.Times().find(ratio.handle);
    auto raw = reporter.Times().find(ratio.raw);
    if (handle == reporter.Times().end() || raw == reporter.Times().end() || raw->second <= 0)
      continue;
    double value = handle->second / raw->second;
    if (ratio.target > 0)
      std::printf("  %-44s %6.2fx  (target <= %.1fx%s)\n", ratio.label.c_str(), value,
                  ratio.target, value <= ratio.target ? "" : ", MISSED");
    else
      std::printf("  %-44s %6.2fx\n", ratio.label.c_str(), value);
  }
  benchmark::Shutdown();
  [pool drain];
  return 0;
}
