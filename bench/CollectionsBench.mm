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

// Every change copies the whole dictionary twice: n changes cost n squared.
static void BM_DictionarySetObjectForKey(benchmark::State& state) {
  std::vector<RVString> keys = Keys(static_cast<int>(state.range(0)));
  RVNumber value(1);
  for (auto _ : state) {
    RVDictionary dictionary;
    for (const RVString& key : keys) dictionary.SetObjectForKey(value, key);
    benchmark::DoNotOptimize(dictionary.Ref());
  }
}
BENCHMARK(BM_DictionarySetObjectForKey)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

static void BM_RawMutableDictionarySet(benchmark::State& state) {
  std::vector<RVString> keys = Keys(static_cast<int>(state.range(0)));
  NSNumber* value = [NSNumber numberWithInt:1];
  for (auto _ : state) {
    NSMutableDictionary* dictionary = [[NSMutableDictionary alloc] init];
    for (const RVString& key : keys) [dictionary setObject:value forKey:key.Ref()];
    benchmark::DoNotOptimize(dictionary);
    [dictionary release];
  }
}
BENCHMARK(BM_RawMutableDictionarySet)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

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

ROVANI_BENCH_RATIO("SetObjectForKey x100 vs NSMutableDictionary",
                   "BM_DictionarySetObjectForKey/100", "BM_RawMutableDictionarySet/100", 0);
ROVANI_BENCH_RATIO("SetObjectForKey x1000 vs NSMutableDictionary",
                   "BM_DictionarySetObjectForKey/1000", "BM_RawMutableDictionarySet/1000", 0);
ROVANI_BENCH_RATIO("SetObjectForKey x10000 vs NSMutableDictionary",
                   "BM_DictionarySetObjectForKey/10000", "BM_RawMutableDictionarySet/10000", 0);
ROVANI_BENCH_RATIO("StringForKey vs objectForKey:+isKindOfClass:", "BM_StringForKey",
                   "BM_RawObjectForKeyIsKindOfClass", 0);
ROVANI_BENCH_RATIO("NumberForKey (miss) vs objectForKey:+isKindOfClass:", "BM_NumberForKeyMiss",
                   "BM_RawObjectForKeyIsKindOfClass", 0);
