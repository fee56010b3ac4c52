// Handles against the same work done directly with Foundation.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

static void BM_RawRetainRelease(benchmark::State& state) {
  NSString* object = [[NSString alloc] initWithFormat:@"object %d", 1];
  for (auto _ : state) {
    [object retain];
    benchmark::DoNotOptimize(object);
    [object release];
  }
  [object release];
}
BENCHMARK(BM_RawRetainRelease);

static void BM_HandleCopyDestroy(benchmark::State& state) {
  RVString original("object 1");
  for (auto _ : state) {
    RVString copy(original);
    benchmark::DoNotOptimize(copy.Ref());
  }
}
BENCHMARK(BM_HandleCopyDestroy);

static void BM_HandleBaseCopyDestroy(benchmark::State& state) {
  RVString original("object 1");
  for (auto _ : state) {
    RVObject copy(original);  // the checked copy with its class-type tests
    benchmark::DoNotOptimize(copy.Ref());
  }
}
BENCHMARK(BM_HandleBaseCopyDestroy);

static void BM_RawIsKindOfClass(benchmark::State& state) {
  NSString* object = @"object";
  Class stringClass = [NSString class];
  for (auto _ : state) benchmark::DoNotOptimize([object isKindOfClass:stringClass]);
}
BENCHMARK(BM_RawIsKindOfClass);

static void BM_IsTypeOfClass(benchmark::State& state) {
  RVString object("object");
  RVString name = RVString::ClassType();
  for (auto _ : state) benchmark::DoNotOptimize(object.IsTypeOfClass(name));
}
BENCHMARK(BM_IsTypeOfClass);

static void BM_RawNSStringMakeCompare(benchmark::State& state) {
  NSString* other = @"hello, world";
  for (auto _ : state) {
    NSString* made = [[NSString alloc] initWithCString:"hello, world" encoding:NSUTF8StringEncoding];
    benchmark::DoNotOptimize([made isEqualToString:other]);
    [made release];
  }
}
BENCHMARK(BM_RawNSStringMakeCompare);

static void BM_RVStringMakeCompare(benchmark::State& state) {
  RVString other(@"hello, world");
  for (auto _ : state) {
    RVString made("hello, world");
    benchmark::DoNotOptimize(made == other);
  }
}
BENCHMARK(BM_RVStringMakeCompare);

// Joining two strings made the way handles make theirs. Each iteration
// drains a pool, so both sides pay for freeing what they made.
static void BM_RawStringByAppending(benchmark::State& state) {
  RVString left("a settings value "), right("of a usual length");
  NSString* leftText = left.Ref();
  NSString* rightText = right.Ref();
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    benchmark::DoNotOptimize([leftText stringByAppendingString:rightText]);
    [pool drain];
  }
}
BENCHMARK(BM_RawStringByAppending);

static void BM_RVStringPlus(benchmark::State& state) {
  RVString left("a settings value "), right("of a usual length");
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVString joined = left + right;
      benchmark::DoNotOptimize(joined.Ref());
    }
    [pool drain];
  }
}
BENCHMARK(BM_RVStringPlus);

// A handle copy costs what a retain and a release cost.
ROVANI_BENCH_RATIO("RVString copy+destroy vs retain+release", "BM_HandleCopyDestroy",
                   "BM_RawRetainRelease", 1.1);
ROVANI_BENCH_RATIO("RVObject checked copy+destroy vs retain+release",
                   "BM_HandleBaseCopyDestroy", "BM_RawRetainRelease", 1.1);
ROVANI_BENCH_RATIO("IsTypeOfClass vs isKindOfClass:", "BM_IsTypeOfClass", "BM_RawIsKindOfClass",
                   3.0);
ROVANI_BENCH_RATIO("RVString make+compare vs NSString", "BM_RVStringMakeCompare",
                   "BM_RawNSStringMakeCompare", 0);
ROVANI_BENCH_RATIO("RVString + vs stringByAppendingString:", "BM_RVStringPlus",
                   "BM_RawStringByAppending", 1.2);
