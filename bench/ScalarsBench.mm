// Numbers and data against raw NSNumber and NSData.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

// GNUstep's number initialisers autorelease a reference of their own, so
// both number benchmarks drain a pool every 1024 numbers alike.
static void BM_RVNumberMakeRead(benchmark::State& state) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  int i = 0;
  for (auto _ : state) {
    RVNumber number(++i);
    benchmark::DoNotOptimize(static_cast<int>(number));
    if ((i & 1023) == 0) {
      [pool drain];
      pool = [[NSAutoreleasePool alloc] init];
    }
  }
  [pool drain];
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

// Strings to bytes: the handles against one dataUsingEncoding: call on a
// string made the way the handle makes its own (a literal converts faster).
// Each iteration drains a pool, so every side pays for freeing what it made.
static void BM_RawDataUsingEncoding(benchmark::State& state) {
  RVString made("a settings value of a usual length");
  NSString* text = made.Ref();
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding];
    benchmark::DoNotOptimize([data length]);
    [pool drain];
  }
}
BENCHMARK(BM_RawDataUsingEncoding);

static void BM_RVDataFromString(benchmark::State& state) {
  RVString text("a settings value of a usual length");
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVData data(text);
      benchmark::DoNotOptimize(data.Length());
    }
    [pool drain];
  }
}
BENCHMARK(BM_RVDataFromString);

static void BM_DataContainingUTF8CString(benchmark::State& state) {
  RVString text("a settings value of a usual length");
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVData data = text.DataContainingUTF8CString();
      benchmark::DoNotOptimize(data.Length());
    }
    [pool drain];
  }
}
BENCHMARK(BM_DataContainingUTF8CString);

// Whether a number is a real: the handle against one look at its type code.
static void BM_RawObjCTypeLook(benchmark::State& state) {
  NSNumber* number = [NSNumber numberWithDouble:2.5];
  for (auto _ : state) {
    const char* type = [number objCType];
    benchmark::DoNotOptimize(type[0] == 'd' || type[0] == 'f');
  }
}
BENCHMARK(BM_RawObjCTypeLook);

static void BM_RVNumberIsFloatType(benchmark::State& state) {
  RVNumber number(2.5);
  for (auto _ : state) benchmark::DoNotOptimize(number.IsFloatType());
}
BENCHMARK(BM_RVNumberIsFloatType);

ROVANI_BENCH_RATIO("RVNumber make+read vs NSNumber", "BM_RVNumberMakeRead",
                   "BM_RawNSNumberMakeRead", 0);
ROVANI_BENCH_RATIO("RVData make+length vs NSData", "BM_RVDataMakeLength",
                   "BM_RawNSDataMakeLength", 0);
ROVANI_BENCH_RATIO("RVData(RVString) vs dataUsingEncoding:", "BM_RVDataFromString",
                   "BM_RawDataUsingEncoding", 1.5);
// The C-string form needs room for its zero: one more buffer and copy.
ROVANI_BENCH_RATIO("DataContainingUTF8CString vs dataUsingEncoding:",
                   "BM_DataContainingUTF8CString", "BM_RawDataUsingEncoding", 2.0);
ROVANI_BENCH_RATIO("RVNumber IsFloatType vs objCType", "BM_RVNumberIsFloatType",
                   "BM_RawObjCTypeLook", 2.0);
