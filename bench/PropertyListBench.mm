// Writing the settings document as an XML property list: the library's
// writer (through RVData(RVDictionary), as callers reach it) against
// libplist's plist_to_xml on the same tree, and GNUstep's serialiser for
// reference. As a binary property list: the library's writer, called
// directly, against libplist's plist_to_bin.
#import <Foundation/Foundation.h>

#include <benchmark/benchmark.h>
#include <json/reader.h>
#include <json/value.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>

#include <Rovani/Rovani.h>

#include "BenchRatios.h"
#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"
#include "SettingsDocument.h"

namespace {

// The document without its nulls, which property lists cannot hold:
// booleans as the platform's boolean numbers, integers and reals as such.
id Foundation(const Json::Value& value) {
  switch (value.type()) {
    case Json::intValue:
      return [NSNumber numberWithLongLong:value.asInt64()];
    case Json::uintValue:
      return [NSNumber numberWithUnsignedLongLong:value.asUInt64()];
    case Json::realValue:
      return [NSNumber numberWithDouble:value.asDouble()];
    case Json::booleanValue:
      return [NSNumber numberWithBool:value.asBool()];
    case Json::stringValue:
      return [NSString stringWithUTF8String:value.asCString()];
    case Json::arrayValue: {
      NSMutableArray* array = [NSMutableArray array];
      for (const Json::Value& item : value)
        if (!item.isNull()) [array addObject:Foundation(item)];
      return [[array copy] autorelease];
    }
    case Json::objectValue: {
      NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
      for (const std::string& name : value.getMemberNames())
        if (!value[name].isNull())
          [dictionary setObject:Foundation(value[name]) forKey:@(name.c_str())];
      return [[dictionary copy] autorelease];
    }
    default:
      return nil;
  }
}

plist_t Libplist(const Json::Value& value) {
  switch (value.type()) {
    case Json::intValue:
      return plist_new_uint(static_cast<uint64_t>(value.asInt64()));
    case Json::uintValue:
      return plist_new_uint(value.asUInt64());
    case Json::realValue:
      return plist_new_real(value.asDouble());
    case Json::booleanValue:
      return plist_new_bool(value.asBool());
    case Json::stringValue:
      return plist_new_string(value.asCString());
    case Json::arrayValue: {
      plist_t array = plist_new_array();
      for (const Json::Value& item : value)
        if (!item.isNull()) plist_array_append_item(array, Libplist(item));
      return array;
    }
    case Json::objectValue: {
      plist_t dictionary = plist_new_dict();
      for (const std::string& name : value.getMemberNames())
        if (!value[name].isNull()) plist_dict_set_item(dictionary, name.c_str(), Libplist(value[name]));
      return dictionary;
    }
    default:
      return nullptr;
  }
}

const Json::Value& Document() {
  static Json::Value document;
  if (document.isNull()) Json::Reader().parse(SettingsDocument(), document);
  return document;
}

}  // namespace

static void BM_PropertyListWriteSettings(benchmark::State& state) {
  RVDictionary settings(Foundation(Document()));
  size_t bytes = 0;
  for (auto _ : state) {
    @autoreleasepool {
      RVData xml(settings);
      bytes = xml.Length();
      benchmark::DoNotOptimize(xml.Bytes());
    }
  }
  if (bytes == 0) state.SkipWithError("the settings were not written");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_PropertyListWriteSettings)->Unit(benchmark::kMillisecond);

// libplist's writer of one format over the same tree: plist_to_xml or
// plist_to_bin, with its own free.
template <void (*Write)(plist_t, char**, uint32_t*), void (*Free)(char*)>
static void LibplistWrite(benchmark::State& state) {
  plist_t settings = Libplist(Document());
  size_t bytes = 0;
  for (auto _ : state) {
    char* text = nullptr;
    uint32_t length = 0;
    Write(settings, &text, &length);
    bytes = length;
    benchmark::DoNotOptimize(text);
    Free(text);
  }
  plist_free(settings);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

static void BM_LibplistWriteSettings(benchmark::State& state) {
  LibplistWrite<plist_to_xml, plist_to_xml_free>(state);
}
BENCHMARK(BM_LibplistWriteSettings)->Unit(benchmark::kMillisecond);

static void BM_GNUstepWriteSettings(benchmark::State& state) {
  NSDictionary* settings = [Foundation(Document()) retain];
  for (auto _ : state) {
    @autoreleasepool {
      NSData* xml = [NSPropertyListSerialization dataFromPropertyList:settings
                                                               format:NSPropertyListXMLFormat_v1_0
                                                     errorDescription:NULL];
      benchmark::DoNotOptimize(xml);
    }
  }
  [settings release];
}
BENCHMARK(BM_GNUstepWriteSettings)->Unit(benchmark::kMillisecond);

static void BM_BinaryPropertyListWriteSettings(benchmark::State& state) {
  NSDictionary* settings = [Foundation(Document()) retain];
  size_t bytes = 0;
  for (auto _ : state) {
    @autoreleasepool {
      NSData* binary = RVBinaryPropertyListData(settings);
      bytes = [binary length];
      benchmark::DoNotOptimize([binary bytes]);
    }
  }
  [settings release];
  if (bytes == 0) state.SkipWithError("the settings were not written");
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_BinaryPropertyListWriteSettings)->Unit(benchmark::kMillisecond);

static void BM_LibplistWriteSettingsBinary(benchmark::State& state) {
  LibplistWrite<plist_to_bin, plist_to_bin_free>(state);
}
BENCHMARK(BM_LibplistWriteSettingsBinary)->Unit(benchmark::kMillisecond);

ROVANI_BENCH_RATIO("property-list writer / libplist plist_to_xml", "BM_PropertyListWriteSettings",
                   "BM_LibplistWriteSettings", 1.5);
ROVANI_BENCH_RATIO("GNUstep's serialiser / libplist plist_to_xml", "BM_GNUstepWriteSettings",
                   "BM_LibplistWriteSettings", 0);
ROVANI_BENCH_RATIO("binary property-list writer / libplist plist_to_bin",
                   "BM_BinaryPropertyListWriteSettings", "BM_LibplistWriteSettingsBinary", 1.0);
