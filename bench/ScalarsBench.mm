// Numbers and data against raw NSNumber and NSData.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

static void BM_RVNumberMakeRead(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) {
    RVNumber number(++i);
    benchmark::DoNotOptimize(static_cast<int>(number));
  }
}
BENCHMARK(BM_RVNumberMakeRead);

static void BM_RawNSNumberMakeRead(benchmark::State& state) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  int i = 0;
  for (auto _ : state) {
    NSNumber* number = [[NSNumber alloc] initWithInt:++i];
    benchmark::DoNotOptimize([number intValue]);
    [number release];
    if ((i & 1023) == 0) {
      [pool drain];
      pool = [[NSAutoreleasePool alloc] init];
    }
  }
  [pool drain];
}
BENCHMARK(BM_RawNSNumberMakeRead);

static void BM_RVDataMakeLength(benchmark::State& state) {
  char bytes[64] = {1};
  for (auto _ : state) {
    RVData data;
    data.InitWithBytes(bytes, sizeof bytes);
    benchmark::DoNotOptimize(data.Length());
  }
}
BENCHMARK(BM_RVDataMakeLength);

static void BM_RawNSDataMakeLength(benchmark::State& state) {
  char bytes[64] = {1};
  for (auto _ : state) {
    NSData* data = [[NSData alloc] initWithBytes:bytes length:sizeof bytes];
    benchmark::DoNotOptimize([data length]);
    [data release];
  }
}
BENCHMARK(BM_RawNSDataMakeLength);

ROVANI_BENCH_RATIO("RVNumber make+read vs NSNumber", "BM_RVNumberMakeRead",
                   "BM_RawNSNumberMakeRead", 0);
ROVANI_BENCH_RATIO("RVData make+length vs NSData", "BM_RVDataMakeLength",
                   "BM_RawNSDataMakeLength", 0);
