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

// Console output as usual, and each benchmark's time per iteration kept by
// name: the median of its repetitions when it was repeated, else its one run.
class RecordingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration && run.iterations > 0)
        single_[run.run_name.str()] = run.GetAdjustedCPUTime();
      else if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
        median_[run.run_name.str()] = run.GetAdjustedCPUTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }
  // 0 when the benchmark did not run.
  double Time(const std::string& name) const {
    auto median = median_.find(name);
    if (median != median_.end()) return median->second;
    auto single = single_.find(name);
    return single != single_.end() ? single->second : 0;
  }

 private:
  std::map<std::string, double> single_;
  std::map<std::string, double> median_;
};

}  // namespace

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  benchmark::Initialize(&argc, argv);
  RecordingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);

  std::printf("\nRatios (handle time / raw Foundation time):\n");
  for (const BenchRatio& ratio : BenchRatios()) {
    double handle = reporter.Time(ratio.handle);
    double raw = reporter.Time(ratio.raw);
    if (handle <= 0 || raw <= 0) continue;
    double value = handle / raw;
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
