// JSON translation against jsoncpp plus building (or walking) the same
// Foundation tree directly, on the standard public documents (bench/data)
// and a settings document; Base64 throughput.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>
#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

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

// The direct route: jsoncpp's reader, then an immutable Foundation tree built
// straight from its values: each collection made once from a buffer of its
// members, one string per distinct key, classes looked up once. Only
// documents known to parse are given, and integers are read in range, so
// nothing here throws.
struct DirectBuilder {
  Class numberClass = [NSNumber class];
  Class stringClass = [NSString class];
  Class arrayClass = [NSArray class];
  Class dictionaryClass = [NSDictionary class];
  id null = [NSNull null];
  std::unordered_map<std::string_view, NSString*> keys;

  ~DirectBuilder() {
    for (auto& key : keys) [key.second release];
  }

  NSString* Key(const char* name) {
    auto found = keys.find(name);
    if (found != keys.end()) return found->second;
    NSString* key = [[stringClass alloc] initWithUTF8String:name];
    keys.emplace(name, key);
    return key;
  }

  id Build(const Json::Value& value) {
    switch (value.type()) {
      case Json::intValue:
        if (value.isInt()) return [[numberClass alloc] initWithInt:value.asInt()];
        return [[numberClass alloc] initWithLong:static_cast<long>(value.asInt64())];
      case Json::uintValue:
        if (value.isUInt()) return [[numberClass alloc] initWithUnsignedInt:value.asUInt()];
        return [[numberClass alloc]
            initWithUnsignedLong:static_cast<unsigned long>(value.asUInt64())];
      case Json::realValue:
        return [[numberClass alloc] initWithDouble:value.asDouble()];
      case Json::stringValue:
        return [[stringClass alloc] initWithUTF8String:value.asCString()];
      case Json::booleanValue:
        return [BoolToRVId(value.asBool()) retain];
      case Json::arrayValue: {
        std::vector<id> elements;
        elements.reserve(value.size());
        for (const Json::Value& element : value) {
          id made = Build(element);
          elements.push_back(made != nil ? made : [null retain]);
        }
        id array = [[arrayClass alloc] initWithObjects:elements.data() count:elements.size()];
        for (id element : elements) [element release];
        return array;
      }
      case Json::objectValue: {
        std::vector<id> names;
        std::vector<id> members;
        names.reserve(value.size());
        members.reserve(value.size());
        for (Json::Value::const_iterator it = value.begin(); it != value.end(); ++it) {
          names.push_back(Key(it.memberName()));
          id made = Build(*it);
          members.push_back(made != nil ? made : [null retain]);
        }
        id dictionary = [[dictionaryClass alloc] initWithObjects:members.data()
                                                         forKeys:names.data()
                                                           count:names.size()];
        for (id member : members) [member release];
        return dictionary;
      }
      default:
        return nil;
    }
  }
};

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
    id built = DirectBuilder().Build(root);
    benchmark::DoNotOptimize(built);
    [built release];
    [pool drain];
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size());
}

// Walking a Foundation tree into a jsoncpp value, the direct way, with the
// classes looked up once and text converted into one reused buffer.
struct DirectWalker {
  Class arrayClass = [NSArray class];
  Class dictionaryClass = [NSDictionary class];
  Class boolClass = [BoolNumber class];
  Class numberClass = [NSNumber class];
  Class stringClass = [NSString class];
  std::vector<char> buffer;

  const char* Utf8(NSString* string) {
    size_t size = [string length] * 3 + 1;
    if (buffer.size() < size) buffer.resize(size);
    [string getCString:buffer.data() maxLength:size encoding:NSUTF8StringEncoding];
    return buffer.data();
  }

  void Walk(id object, Json::Value& into) {
    if ([object isKindOfClass:arrayClass]) {
      into = Json::Value(Json::arrayValue);
      for (id element in object) Walk(element, into.append(Json::Value()));
    } else if ([object isKindOfClass:dictionaryClass]) {
      into = Json::Value(Json::objectValue);
      for (NSString* key in object) Walk([object objectForKey:key], into[Utf8(key)]);
    } else if ([object isKindOfClass:boolClass]) {
      into = Json::Value([object boolValue] ? true : false);
    } else if ([object isKindOfClass:numberClass]) {
      const char* type = [object objCType];
      if (type[0] == 'd' || type[0] == 'f')
        into = Json::Value([object doubleValue]);
      else
        into = Json::Value([object intValue]);
    } else if ([object isKindOfClass:stringClass]) {
      into = Json::Value(Utf8(object));
    } else {
      into = Json::Value();
    }
  }
};

const std::string& Settings() {
  static const std::string text = SettingsDocument();
  return text;
}

// The standard public documents by name (bench/data/<name>.json), and the
// settings document as "settings"; each read once.
const std::string& Document(const std::string& name) {
  static std::map<std::string, std::string> documents;
  auto found = documents.find(name);
  if (found != documents.end()) return found->second;
  std::string text;
  if (name == "settings") {
    text = Settings();
  } else {
    std::string path = __FILE__;
    path = path.substr(0, path.rfind('/')) + "/data/" + name + ".json";
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    text = bytes.str();
    if (text.empty()) std::fprintf(stderr, "cannot read %s\n", path.c_str());
  }
  return documents[name] = text;
}

void BM_JsonParse(benchmark::State& state, const char* name) {
  ParseWithTranslator(state, Document(name));
}

void BM_RawJsonParse(benchmark::State& state, const char* name) {
  ParseDirectly(state, Document(name));
}

void BM_JsonEncode(benchmark::State& state, const char* name) {
  RVJsonTranslator translator;
  std::unique_ptr<RVObject> tree(translator.Parse(Handle(Document(name))));
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    RVString text = translator.Encode(*tree);
    benchmark::DoNotOptimize(text.Ref());
    [pool drain];
  }
}

void BM_RawJsonEncode(benchmark::State& state, const char* name) {
  std::unique_ptr<RVObject> tree(RVJsonTranslator().Parse(Handle(Document(name))));
  for (auto _ : state) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    Json::Value value;
    DirectWalker().Walk(tree->Ref(), value);
    Json::StyledWriter writer;
    NSString* text = [[NSString alloc] initWithUTF8String:writer.write(value).c_str()];
    benchmark::DoNotOptimize(text);
    [text release];
    [pool drain];
  }
}

}  // namespace

#define ROVANI_JSON_DOCUMENT(name, label)                                                    \
  BENCHMARK_CAPTURE(BM_JsonParse, name, #name)->Unit(benchmark::kMillisecond);              \
  BENCHMARK_CAPTURE(BM_RawJsonParse, name, #name)->Unit(benchmark::kMillisecond);           \
  BENCHMARK_CAPTURE(BM_JsonEncode, name, #name)->Unit(benchmark::kMillisecond);             \
  BENCHMARK_CAPTURE(BM_RawJsonEncode, name, #name)->Unit(benchmark::kMillisecond);          \
  static BenchRatioRegistration gParseRatio_##name("JSON parse, " label, "BM_JsonParse/" #name, \
                                                   "BM_RawJsonParse/" #name, 1.2);              \
  static BenchRatioRegistration gEncodeRatio_##name("JSON encode, " label,                       \
                                                    "BM_JsonEncode/" #name,                      \
                                                    "BM_RawJsonEncode/" #name, 1.2)

ROVANI_JSON_DOCUMENT(twitter, "twitter.json");
ROVANI_JSON_DOCUMENT(citm_catalog, "citm_catalog.json");
ROVANI_JSON_DOCUMENT(canada, "canada.json");
ROVANI_JSON_DOCUMENT(settings, "1 MB settings");


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

ROVANI_BENCH_RATIO("JSON parse, flat 10,000-key object", "BM_JsonParseFlatObject/10000",
                   "BM_RawJsonParseFlatObject/10000", 1.5);
ROVANI_BENCH_RATIO("JSON parse, 100,000-integer array", "BM_JsonParseIntegerArray/100000",
                   "BM_RawJsonParseIntegerArray/100000", 1.5);
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
