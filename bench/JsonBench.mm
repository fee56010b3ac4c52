// JSON translation against jsoncpp plus building (or walking) the same
// Foundation tree directly; Base64 throughput.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>
#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <cstdio>
#include <memory>
#include <string>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"
#include "SettingsDocument.h"

namespace {

std::string FlatObject(int keys) {
  std::string text = "{";
  for (int i = 0; i < keys; ++i) {
    if (i > 0) text += ", ";
    text += "\"key" + std::to_string(i) + "\": " + std::to_string(i);
  }
  return text + "}";
}

std::string IntegerArray(int elements) {
  std::string text = "[";
  for (int i = 0; i < elements; ++i) {
    if (i > 0) text += ", ";
    text += std::to_string(i * 7);
  }
  return text + "]";
}

RVString Handle(const std::string& text) {
  NSString* string = [[NSString alloc] initWithBytes:text.data()
                                              length:text.size()
                                            encoding:NSUTF8StringEncoding];
  RVString handle(string);
  [string release];
  return handle;
}

// The direct route: jsoncpp's reader, then mutable Foundation collections
// filled in place. Only documents known to parse are given, and integers stay
// in range, so nothing here throws.
id BuildDirectly(const Json::Value& value) {
  switch (value.type()) {
    case Json::intValue:
      return [[NSNumber alloc] initWithInt:value.asInt()];
    case Json::uintValue:
      return [[NSNumber alloc] initWithUnsignedInt:value.asUInt()];
    case Json::realValue:
      return [[NSNumber alloc] initWithDouble:value.asDouble()];
    case Json::stringValue:
      return [[NSString alloc] initWithUTF8String:value.asCString()];
    case Json::booleanValue:
      return [[NSNumber alloc] initWithBool:value.asBool()];
    case Json::arrayValue: {
      NSMutableArray* array = [[NSMutableArray alloc] initWithCapacity:value.size()];
      for (const Json::Value& element : value) {
        id made = BuildDirectly(element);
        [array addObject:made != nil ? made : [NSNull null]];
        [made release];
      }
      return array;
    }
    case Json::objectValue: {
      NSMutableDictionary* dictionary = [[NSMutableDictionary alloc] initWithCapacity:value.size()];
      for (Json::Value::const_iterator it = value.begin(); it != value.end(); ++it) {
        NSString* key = [[NSString alloc] initWithUTF8String:it.memberName()];
        id made = BuildDirectly(*it);
        [dictionary setObject:made != nil ? made : [NSNull null] forKey:key];
        [made release];
        [key release];
      }
      return dictionary;
    }
    default:
      return nil;
  }
}

void ParseWithTranslator(benchmark::State& state, const std::string& text) {
  RVString document = Handle(text);
  RVJsonTranslator translator;
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    RVObject* parsed = translator.Parse(document);
    benchmark::DoNotOptimize(parsed);
    delete parsed;
    [pool drain];
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size());
}

void ParseDirectly(benchmark::State& state, const std::string& text) {
  RVString document = Handle(text);
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    const char* utf8 = [document.Ref() UTF8String];
    Json::Reader reader;
    Json::Value root(Json::nullValue);
    reader.parse(std::string(utf8), root, true);
    id built = BuildDirectly(root);
    benchmark::DoNotOptimize(built);
    [built release];
    [pool drain];
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size());
}

// Walking a Foundation tree into a jsoncpp value, the direct way.
void WalkDirectly(id object, Json::Value& into) {
  if ([object isKindOfClass:[NSArray class]]) {
    into = Json::Value(Json::arrayValue);
    for (id element in object) WalkDirectly(element, into.append(Json::Value()));
  } else if ([object isKindOfClass:[NSDictionary class]]) {
    into = Json::Value(Json::objectValue);
    for (NSString* key in object) WalkDirectly([object objectForKey:key], into[[key UTF8String]]);
  } else if ([object isKindOfClass:[BoolNumber class]]) {
    into = Json::Value([object boolValue] ? true : false);
  } else if ([object isKindOfClass:[NSNumber class]]) {
    const char* type = [object objCType];
    if (type[0] == 'd' || type[0] == 'f')
      into = Json::Value([object doubleValue]);
    else
      into = Json::Value([object intValue]);
  } else if ([object isKindOfClass:[NSString class]]) {
    into = Json::Value([object UTF8String]);
  } else {
    into = Json::Value();
  }
}

const std::string& Settings() {
  static const std::string text = SettingsDocument();
  return text;
}

}  // namespace

static void BM_JsonParseSettings(benchmark::State& state) { ParseWithTranslator(state, Settings()); }
BENCHMARK(BM_JsonParseSettings)->Unit(benchmark::kMillisecond);

static void BM_RawJsonParseSettings(benchmark::State& state) { ParseDirectly(state, Settings()); }
BENCHMARK(BM_RawJsonParseSettings)->Unit(benchmark::kMillisecond);

static void BM_JsonParseFlatObject(benchmark::State& state) {
  ParseWithTranslator(state, FlatObject(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_JsonParseFlatObject)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

static void BM_RawJsonParseFlatObject(benchmark::State& state) {
  ParseDirectly(state, FlatObject(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_RawJsonParseFlatObject)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

static void BM_JsonParseIntegerArray(benchmark::State& state) {
  ParseWithTranslator(state, IntegerArray(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_JsonParseIntegerArray)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

static void BM_RawJsonParseIntegerArray(benchmark::State& state) {
  ParseDirectly(state, IntegerArray(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_RawJsonParseIntegerArray)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

static void BM_JsonEncodeSettings(benchmark::State& state) {
  RVJsonTranslator translator;
  std::unique_ptr<RVObject> tree(translator.Parse(Handle(Settings())));
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    RVString text = translator.Encode(*tree);
    benchmark::DoNotOptimize(text.Ref());
    [pool drain];
  }
}
BENCHMARK(BM_JsonEncodeSettings)->Unit(benchmark::kMillisecond);

static void BM_RawJsonEncodeSettings(benchmark::State& state) {
  std::unique_ptr<RVObject> tree(RVJsonTranslator().Parse(Handle(Settings())));
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    Json::Value value;
    WalkDirectly(tree->Ref(), value);
    Json::StyledWriter writer;
    NSString* text = [[NSString alloc] initWithUTF8String:writer.write(value).c_str()];
    benchmark::DoNotOptimize(text);
    [text release];
    [pool drain];
  }
}
BENCHMARK(BM_RawJsonEncodeSettings)->Unit(benchmark::kMillisecond);

ROVANI_BENCH_RATIO("JSON parse, 1 MB settings", "BM_JsonParseSettings", "BM_RawJsonParseSettings", 1.5);
ROVANI_BENCH_RATIO("JSON parse, flat 10,000-key object", "BM_JsonParseFlatObject/10000",
                   "BM_RawJsonParseFlatObject/10000", 1.5);
ROVANI_BENCH_RATIO("JSON parse, 100,000-integer array", "BM_JsonParseIntegerArray/100000",
                   "BM_RawJsonParseIntegerArray/100000", 1.5);
ROVANI_BENCH_RATIO("JSON encode, 1 MB settings", "BM_JsonEncodeSettings", "BM_RawJsonEncodeSettings",
                   1.5);
// Linear growth: ten times the members, about ten times the time.
ROVANI_BENCH_RATIO("JSON parse, flat object 10,000 / 1,000 keys", "BM_JsonParseFlatObject/10000",
                   "BM_JsonParseFlatObject/1000", 0);
ROVANI_BENCH_RATIO("JSON parse, flat object 100,000 / 10,000 keys", "BM_JsonParseFlatObject/100000",
                   "BM_JsonParseFlatObject/10000", 0);
ROVANI_BENCH_RATIO("JSON parse, integer array 10,000 / 1,000", "BM_JsonParseIntegerArray/10000",
                   "BM_JsonParseIntegerArray/1000", 0);
ROVANI_BENCH_RATIO("JSON parse, integer array 100,000 / 10,000", "BM_JsonParseIntegerArray/100000",
                   "BM_JsonParseIntegerArray/10000", 0);

namespace {

RVData MegabyteOf(bool base64Text) {
  std::string bytes;
  bytes.reserve(1 << 20);
  unsigned int seed = 7;
  const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (int i = 0; i < (1 << 20); ++i) {
    seed = seed * 1103515245u + 12345u;
    bytes.push_back(base64Text ? alphabet[(seed >> 16) & 63] : static_cast<char>(seed >> 16));
  }
  return RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

}  // namespace

static void BM_Base64Encode1MB(benchmark::State& state) {
  RVData input = MegabyteOf(false);
  for (auto _ : state) {
    RVData encoded = Base64Encoding::EncodeData(input);
    benchmark::DoNotOptimize(encoded.Ref());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * input.Length());
}
BENCHMARK(BM_Base64Encode1MB)->Unit(benchmark::kMillisecond);

static void BM_Base64Decode1MB(benchmark::State& state) {
  RVData input = MegabyteOf(true);
  for (auto _ : state) {
    RVData decoded = Base64Encoding::DecodeData(input);
    benchmark::DoNotOptimize(decoded.Ref());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * input.Length());
}
BENCHMARK(BM_Base64Decode1MB)->Unit(benchmark::kMillisecond);
