// Building dictionaries and reading them typed, against the same work done
// directly with Foundation.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>

#include <vector>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"

namespace {

std::vector<RVString> Keys(int n) {
  std::vector<RVString> keys;
  keys.reserve(n);
  for (int i = 0; i < n; ++i) keys.push_back(RVString::StringWithFormat("key%d", i));
  return keys;
}

}  // namespace

// Building a collection by n changes of its handle, against the mutable
// platform collection filled by the same n changes and then copied once
// into an immutable one. Each handle change is made in place, since the
// handle is the only holder of its object. Both sides drain a pool per
// round: the platform's copy leaves a reference per element in it.

static void BM_DictionarySetObjectForKey(benchmark::State& state) {
  std::vector<RVString> keys = Keys(static_cast<int>(state.range(0)));
  RVNumber value(1);
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVDictionary dictionary;
      for (const RVString& key : keys) dictionary.SetObjectForKey(value, key);
      benchmark::DoNotOptimize(dictionary.Ref());
    }
    [pool drain];
  }
}
BENCHMARK(BM_DictionarySetObjectForKey)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_DictionarySetValueForKey(benchmark::State& state) {
  std::vector<RVString> keys = Keys(static_cast<int>(state.range(0)));
  RVNumber value(1);
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVDictionary dictionary;
      for (const RVString& key : keys) dictionary.SetValueForKey(value, key);
      benchmark::DoNotOptimize(dictionary.Ref());
    }
    [pool drain];
  }
}
BENCHMARK(BM_DictionarySetValueForKey)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_RawMutableDictionarySetThenCopy(benchmark::State& state) {
  std::vector<RVString> keys = Keys(static_cast<int>(state.range(0)));
  NSNumber* value = [NSNumber numberWithInt:1];
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSMutableDictionary* dictionary = [[NSMutableDictionary alloc] init];
    for (const RVString& key : keys) [dictionary setObject:value forKey:key.Ref()];
    NSDictionary* copy = [dictionary copy];
    [dictionary release];
    benchmark::DoNotOptimize(copy);
    [copy release];
    [pool drain];
  }
}
BENCHMARK(BM_RawMutableDictionarySetThenCopy)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_ArrayAddObject(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  RVNumber value(1);
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVArray array;
      for (int i = 0; i < n; ++i) array.AddObject(value);
      benchmark::DoNotOptimize(array.Ref());
    }
    [pool drain];
  }
}
BENCHMARK(BM_ArrayAddObject)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_RawMutableArrayAddThenCopy(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  NSNumber* value = [NSNumber numberWithInt:1];
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSMutableArray* array = [[NSMutableArray alloc] init];
    for (int i = 0; i < n; ++i) [array addObject:value];
    NSArray* copy = [array copy];
    [array release];
    benchmark::DoNotOptimize(copy);
    [copy release];
    [pool drain];
  }
}
BENCHMARK(BM_RawMutableArrayAddThenCopy)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_DataAppendData(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  char chunk[100] = {0};
  RVData piece = RVData::DataWithBytes(chunk, sizeof chunk);
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    {
      RVData data;
      for (int i = 0; i < n; ++i) data.AppendData(piece);
      benchmark::DoNotOptimize(data.Ref());
    }
    [pool drain];
  }
}
BENCHMARK(BM_DataAppendData)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static void BM_RawMutableDataAppendThenCopy(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  char chunk[100] = {0};
  NSData* piece = [NSData dataWithBytes:chunk length:sizeof chunk];
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSMutableData* data = [[NSMutableData alloc] init];
    for (int i = 0; i < n; ++i) [data appendData:piece];
    NSData* copy = [data copy];
    [data release];
    benchmark::DoNotOptimize(copy);
    [copy release];
    [pool drain];
  }
}
BENCHMARK(BM_RawMutableDataAppendThenCopy)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

static RVDictionary SampleDictionary() {
  RVDictionary dictionary;
  dictionary.SetObjectForKey(RVString("text"), "string");
  dictionary.SetObjectForKey(RVNumber(42), "number");
  return dictionary;
}

static void BM_StringForKey(benchmark::State& state) {
  RVDictionary dictionary = SampleDictionary();
  RVString key("string");
  for (auto _ : state) {
    RVString value = dictionary.StringForKey(key);
    benchmark::DoNotOptimize(value.Ref());
  }
}
BENCHMARK(BM_StringForKey);

static void BM_RawObjectForKeyIsKindOfClass(benchmark::State& state) {
  RVDictionary dictionary = SampleDictionary();
  NSDictionary* raw = dictionary.Ref();
  NSString* key = @"string";
  Class stringClass = [NSString class];
  for (auto _ : state) {
    id value = [raw objectForKey:key];
    benchmark::DoNotOptimize([value isKindOfClass:stringClass] ? value : nil);
  }
}
BENCHMARK(BM_RawObjectForKeyIsKindOfClass);

static void BM_NumberForKeyMiss(benchmark::State& state) {
  RVDictionary dictionary = SampleDictionary();
  RVString key("string");
  for (auto _ : state) {
    RVNumber value = dictionary.NumberForKey(key);
    benchmark::DoNotOptimize(value.Ref());
  }
}
BENCHMARK(BM_NumberForKeyMiss);

ROVANI_BENCH_RATIO("SetObjectForKey x100 vs mutable+copy", "BM_DictionarySetObjectForKey/100",
                   "BM_RawMutableDictionarySetThenCopy/100", 3.0);
ROVANI_BENCH_RATIO("SetObjectForKey x1000 vs mutable+copy", "BM_DictionarySetObjectForKey/1000",
                   "BM_RawMutableDictionarySetThenCopy/1000", 3.0);
ROVANI_BENCH_RATIO("SetObjectForKey x10000 vs mutable+copy", "BM_DictionarySetObjectForKey/10000",
                   "BM_RawMutableDictionarySetThenCopy/10000", 3.0);
ROVANI_BENCH_RATIO("SetValueForKey x100 vs mutable+copy", "BM_DictionarySetValueForKey/100",
                   "BM_RawMutableDictionarySetThenCopy/100", 3.0);
ROVANI_BENCH_RATIO("SetValueForKey x1000 vs mutable+copy", "BM_DictionarySetValueForKey/1000",
                   "BM_RawMutableDictionarySetThenCopy/1000", 3.0);
ROVANI_BENCH_RATIO("SetValueForKey x10000 vs mutable+copy", "BM_DictionarySetValueForKey/10000",
                   "BM_RawMutableDictionarySetThenCopy/10000", 3.0);
ROVANI_BENCH_RATIO("AddObject x100 vs mutable+copy", "BM_ArrayAddObject/100",
                   "BM_RawMutableArrayAddThenCopy/100", 3.0);
ROVANI_BENCH_RATIO("AddObject x1000 vs mutable+copy", "BM_ArrayAddObject/1000",
                   "BM_RawMutableArrayAddThenCopy/1000", 3.0);
ROVANI_BENCH_RATIO("AddObject x10000 vs mutable+copy", "BM_ArrayAddObject/10000",
                   "BM_RawMutableArrayAddThenCopy/10000", 3.0);
ROVANI_BENCH_RATIO("AppendData (100 B) x100 vs mutable+copy", "BM_DataAppendData/100",
                   "BM_RawMutableDataAppendThenCopy/100", 3.0);
ROVANI_BENCH_RATIO("AppendData (100 B) x1000 vs mutable+copy", "BM_DataAppendData/1000",
                   "BM_RawMutableDataAppendThenCopy/1000", 3.0);
ROVANI_BENCH_RATIO("AppendData (100 B) x10000 vs mutable+copy", "BM_DataAppendData/10000",
                   "BM_RawMutableDataAppendThenCopy/10000", 3.0);
ROVANI_BENCH_RATIO("StringForKey vs objectForKey:+isKindOfClass:", "BM_StringForKey",
                   "BM_RawObjectForKeyIsKindOfClass", 0);
ROVANI_BENCH_RATIO("NumberForKey (miss) vs objectForKey:+isKindOfClass:", "BM_NumberForKeyMiss",
                   "BM_RawObjectForKeyIsKindOfClass", 0);
