#import <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <Rovani/Rovani.h>

#include "../bench/SettingsDocument.h"
#include "support/LogCapture.h"
#include "support/TestSupport.h"

namespace {

const char kParseFailed[] = "RVJsonTranslator::Parse: Failed to parse";

// The route the translator must match: every member added through the
// collections' own change members, one by one. Documents given to it are
// known to parse and stay in the 32-bit or checked ranges, so no jsoncpp call
// here throws.
RVObject* MemberByMember(const Json::Value& value) {
  switch (value.type()) {
    case Json::intValue:
      return value.isInt() ? new RVNumber(value.asInt()) : new RVNumber(static_cast<long>(value.asInt64()));
    case Json::uintValue:
      return value.isUInt() ? new RVNumber(value.asUInt())
                            : new RVNumber(static_cast<unsigned long>(value.asUInt64()));
    case Json::realValue:
      return new RVNumber(value.asDouble());
    case Json::stringValue:
      return new RVString(value.asString().c_str());
    case Json::booleanValue:
      return new RVBool(value.asBool());
    case Json::arrayValue: {
      std::unique_ptr<RVArray> array(new RVArray());
      for (const Json::Value& element : value) array->AddObject(*std::unique_ptr<RVObject>(MemberByMember(element)));
      return array.release();
    }
    case Json::objectValue: {
      std::unique_ptr<RVDictionary> dictionary(new RVDictionary());
      for (const std::string& name : value.getMemberNames())
        dictionary->SetObjectForKey(*std::unique_ptr<RVObject>(MemberByMember(value[name])), RVString(name.c_str()));
      return dictionary.release();
    }
    default:
      return new RVObject();
  }
}

// Same classes all the way down, equal values, equal keys.
::testing::AssertionResult SameTree(id a, id b, const std::string& where = "root") {
  if (a == nil || b == nil) {
    if (a == b) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << where << ": only one side is nil";
  }
  // Immutable collections count as one kind, whoever made them: the
  // library's own are of classes of their own.
  Class collection = [a isKindOfClass:[NSDictionary class]] ? [NSDictionary class]
                     : [a isKindOfClass:[NSArray class]]    ? [NSArray class]
                                                            : Nil;
  if (collection != Nil ? ![b isKindOfClass:collection] : [a class] != [b class])
    return ::testing::AssertionFailure() << where << ": " << [NSStringFromClass([a class]) UTF8String]
                                         << " vs " << [NSStringFromClass([b class]) UTF8String];
  if (collection != Nil) {
    if ([a count] != [b count]) return ::testing::AssertionFailure() << where << ": counts differ";
    bool keyed = collection == [NSDictionary class];
    NSArray* keys = keyed ? [a allKeys] : nil;
    for (NSUInteger i = 0; i < [a count]; ++i) {
      id key = [keys objectAtIndex:i];
      ::testing::AssertionResult same =
          keyed ? SameTree([a objectForKey:key], [b objectForKey:key], where + "." + [key UTF8String])
                : SameTree([a objectAtIndex:i], [b objectAtIndex:i], where + "[" + std::to_string(i) + "]");
      if (!same) return same;
    }
    return ::testing::AssertionSuccess();
  }
  if ([a isKindOfClass:[NSNumber class]] && strcmp([a objCType], [b objCType]) != 0)
    return ::testing::AssertionFailure() << where << ": number types differ";
  if (![a isEqual:b])
    return ::testing::AssertionFailure() << where << ": " << [[a description] UTF8String]
                                         << " vs " << [[b description] UTF8String];
  return ::testing::AssertionSuccess();
}

struct Outcome {
  std::unique_ptr<RVObject> handle;
  std::string raised;  // name and reason of the platform's exception
};

template <typename Make>
Outcome Attempt(Make make) {
  Outcome outcome;
  @try {
    outcome.handle.reset(make());
  } @catch (NSException* exception) {
    outcome.raised = std::string([[exception name] UTF8String]) + ": " + [[exception reason] UTF8String];
  }
  return outcome;
}

TEST(JsonTranslator, EncodesEachKindAsTheStyledWriterPrintsIt) {
  RVJsonTranslator translator;
  RVArray array;
  array.AddObject(RVNumber(3));
  array.AddObject(RVNumber(2.5));
  array.AddObject(RVNumber(4294967295u));  // through the int conversion
  array.AddObject(RVNumber(2.0f));
  array.AddObject(RVString("x"));
  array.AddObject(RVBool(true));
  array.AddObject(RVString(static_cast<RVId>(@"cut\0here")));
  array.AddObject(RVData(RVString("bytes")));
  array.AddObject(RVObject(static_cast<RVId>([NSDate date])));
  array.AddObject(RVObject(static_cast<RVId>([NSNull null])));
  array.AddObject(RVString(static_cast<RVId>(@"caf\u00e9")));

  // jsoncpp's StyledWriter text, byte for byte: short arrays on one line,
  // non-ASCII escaped, members sorted.
  const std::string line = "[ 3, 2.5, -1, 2.0, \"x\", true, \"cut\", null, null, null, \"caf\\u00e9\" ]";
  EXPECT_EQ(Text(translator.Encode(array)), line + "\n");
  EXPECT_EQ(Text(translator.Encode(RVArray())), "[]\n");
  // Inside a tree every object is written as the factory's handle for it:
  // mutable collections as collections, the platform's booleans as numbers.
  NSArray* mixed = @[[NSMutableArray arrayWithObject:[NSNumber numberWithBool:YES]],
                     [NSMutableDictionary dictionaryWithObject:BoolToRVId(true) forKey:@"t"]];
  EXPECT_EQ(Text(translator.Encode(RVArray(mixed))),
            "[\n   [ 1 ],\n   {\n      \"t\" : true\n   }\n]\n");
  EXPECT_EQ(Text(translator.Encode(RVObject())), "null\n");
  // The root's own handle class decides: a plain handle is null, whatever it holds.
  EXPECT_EQ(Text(translator.Encode(RVObject(array.Ref()))), "null\n");

  std::unique_ptr<Json::Value> value(static_cast<Json::Value*>(translator.EncodeNext(RVBool(false))));
  EXPECT_TRUE(value && value->isBool() && !value->asBool());
}

uint64_t Fingerprint(const std::string& text) {  // 64-bit FNV-1a
  uint64_t hash = 14695981039346656037ull;
  for (unsigned char c : text) hash = (hash ^ c) * 1099511628211ull;
  return hash;
}

// The benchmark documents (bench/data, beside this folder, and the generated
// settings document) parse and encode to exactly the text the translator has
// always printed for them.
TEST(JsonTranslator, BenchmarkDocumentsEncodeToTheirKnownText) {
  const struct {
    const char* name;
    size_t length;
    uint64_t fingerprint;
  } known[] = {{"twitter", 796876, 0xd087d8c2efcc241full}, {"citm_catalog", 1448304, 0x288694c658878becull},
               {"canada", 3488919, 0x6c76875ae00c84aeull}, {"settings", 2012144, 0x6465abb7664ea96cull}};
  // From the build, not __FILE__: a package build maps source paths away.
  const std::string data = ROVANI_BENCH_DATA_DIR;
  RVJsonTranslator translator;
  for (const auto& document : known) {
    SCOPED_TRACE(document.name);
    std::string bytes = SettingsDocument();
    if (std::string(document.name) != "settings") {
      std::ifstream file(data + document.name + ".json", std::ios::binary);
      bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::unique_ptr<RVObject> tree(translator.Parse(RVString(DataFromText(bytes))));
    ASSERT_TRUE(tree != nullptr);
    std::string text = Text(translator.Encode(*tree));
    EXPECT_EQ(text.size(), document.length);
    EXPECT_EQ(Fingerprint(text), document.fingerprint);
  }
}

// Text beyond ASCII, as keys and as values: a pair, a lone surrogate (left
// out), a leading byte-order mark, control characters, a NUL (ends it).
TEST(JsonTranslator, EncodesAwkwardTextAsBefore) {
  NSArray* texts = @[@"caf\u00e9", @"\U0001F600!", @"\uFEFFmark", @"tab\there\u0001",
                     [NSString stringWithFormat:@"a%Cb", (unichar)0xD800],
                     [NSString stringWithFormat:@"n%C%C", (unichar)0, (unichar)0xD800]];
  NSMutableDictionary* keyed = [NSMutableDictionary dictionary];
  for (NSString* text in texts) [keyed setObject:@1 forKey:text];
  RVJsonTranslator translator;
  const std::string each[] = {R"("caf\u00e9")", R"("\ud83d\ude00!")", R"("\ufeffmark")",
                              R"("tab\there\u0001")", R"("ab")", R"("n")"};
  std::string list = "[\n";
  for (const std::string& text : each) list += "   " + text + (text == each[5] ? "\n" : ",\n");
  EXPECT_EQ(Text(translator.Encode(RVArray(texts))), list + "]\n");
  const int sorted[] = {4, 0, 5, 3, 2, 1};
  std::string object = "{\n";
  for (int i : sorted) object += "   " + each[i] + (i == 1 ? " : 1\n" : " : 1,\n");
  EXPECT_EQ(Text(translator.Encode(RVDictionary(static_cast<NSDictionary*>(keyed)))),
            object + "}\n");
}

TEST(JsonTranslator, EncodingADictionaryStopsAtAnEmptyKey) {
  RVJsonTranslator translator;
  NSDictionary* raw = @{@"" : @1, @"a" : @2, @"b" : @3, @"c" : @4, @"d" : @5};
  Json::Value expected(Json::objectValue);
  for (NSString* key in [raw keyEnumerator]) {
    if ([key length] == 0) break;
    expected[[key UTF8String]] = [[raw objectForKey:key] intValue];
  }
  EXPECT_EQ(Text(translator.Encode(RVDictionary(raw))), Json::StyledWriter().write(expected));
}

// Small unsigned integers; an array with a skipped index is refused by the
// platform's array.
TEST(JsonTranslator, ParsesHandMadeValues) {
  RVJsonTranslator translator;
  Json::Value hand(Json::arrayValue);
  hand[0u] = Json::Value(7u);
  std::unique_ptr<RVObject> small(translator.ParseNext(&hand));
  EXPECT_TRUE(static_cast<RVArray&>(*small).NumberAtIndex(0) == 7u);
  hand[2u] = Json::Value(1);
  EXPECT_FALSE(Attempt([&] { return translator.ParseNext(&hand); }).raised.empty());
}

// Parsing fills private mutable collections; the result must be what the
// collections' own members give when the members are added one by one.
TEST(JsonTranslator, ParsingMatchesAddingMembersOneByOne) {
  const char* documents[] = {
      // placeholders for empty members, nesting, every scalar kind
      "{\"n\":null, \"ea\":[], \"eo\":{}, \"es\":\"\", \"s\":\"x\", \"i\":-5, \"big\":5000000000, \"neg\":-5000000000,"
      " \"huge\":18446744073709551615, \"r\":2.5, \"t\":true, \"f\":false,"
      " \"arr\":[1, \"\", [2, [3]], {\"k\":{}, \"z\":[]}], \"deep\":{\"x\":{\"y\":[true, 0.5]}}}",
      // duplicate names, and names equal up to a NUL
      "{\"a\":1, \"a\":2, \"k\\u0000x\":1, \"k\\u0000y\":[1], \"k\":{\"q\":null}}",
      // text that is not UTF-8 (a lone low surrogate), as a member value
      "{\"bad\":\"\\udc00\", \"ok\":\"\\u00e9\"}",
      // refused by the platform's array: null, empty collections, text that is not UTF-8
      "[1, null]", "[[1], []]", "[{}]", "[\"\\udc00\"]", "{\"x\":[2, null]}",
      // a name that is not UTF-8 makes no key
      "{\"\\udc00\":1}",
      // numbers beyond 64 bits read as reals; a NUL ends a string; comments
      "[1, 1e300, 99999999999999999999]", "\"a\\u0000b\" // comment",
      // tops
      "\"top\"", "3", "null", " [ ] ", "{}", "true", "4294967295"};
  LogCapture log;
  RVJsonTranslator translator;
  for (const char* document : documents) {
    SCOPED_TRACE(document);
    Json::Value root;
    Json::Reader reader;
    ASSERT_TRUE(reader.parse(document, root, true));
    Outcome expected = Attempt([&] { return MemberByMember(root); });
    Outcome parsed = Attempt([&] { return translator.Parse(document); });
    Outcome direct = Attempt([&] { return translator.ParseNext(&root); });
    for (Outcome* actual : {&parsed, &direct}) {
      EXPECT_EQ(actual->raised, expected.raised);
      if (!expected.raised.empty()) continue;
      ASSERT_TRUE(actual->handle && expected.handle);
      const RVObject &made = *actual->handle, &wanted = *expected.handle;
      EXPECT_EQ(typeid(made), typeid(wanted));
      EXPECT_TRUE(SameTree(actual->handle->Ref(), expected.handle->Ref()));
    }
  }
  EXPECT_TRUE(log.Lines().empty());
}

TEST(JsonTranslator, RefusedTextLogsAndAnswersNull) {
  LogCapture log;
  std::string deep(100000, '[');
  std::string nested = std::string(10000, '[') + std::string(10000, ']');
  std::string garbage;
  for (int i = 0; i < 4096; ++i) garbage.push_back(static_cast<char>((i * 131 + 7) % 256));
  const std::string refused[] = {"", "{", "[1, 2", "{\"a\":}", "nul", deep, nested, garbage};
  for (const std::string& text : refused)
    EXPECT_EQ(RVJsonTranslator().Parse(RVString(text.c_str())), nullptr) << text.substr(0, 20);
  EXPECT_EQ(log.Count(kParseFailed), 8);

  // A NUL in the text ends the document.
  RVString withNul(static_cast<RVId>(@"[1]\0garbage"));
  std::unique_ptr<RVObject> cut(RVJsonTranslator().Parse(withNul));
  EXPECT_TRUE(cut && cut->IsTypeOfClass(RVArray::ClassType()));
}

TEST(JsonTranslator, FilesRoundTripAndReportFailures) {
  LogCapture log;
  ScratchDir dir;
  RVJsonTranslator translator;
  RVDictionary settings;
  settings.SetObjectForKey(RVString("Rovani"), "name");
  settings.SetObjectForKey(RVNumber(3), "count");
  RVString path(dir.File("settings.json").c_str());
  EXPECT_FALSE(translator.EncodeToFilePath(settings, path).IsError());
  EXPECT_EQ(Text(RVString(RVData::DataWithContentsOfFile(path))), Text(translator.Encode(settings)));
  std::unique_ptr<RVObject> read(translator.ParseFromFilePath(path));
  ASSERT_TRUE(read != nullptr);
  EXPECT_TRUE(SameTree(read->Ref(), settings.Ref()));

  RVError error = translator.EncodeToFilePath(settings, (dir.File("missing/x.json")).c_str());
  EXPECT_EQ(error.Code(), 2);
  EXPECT_EQ(Text(error.Domain()), "RVJsonTranslatorDomain");
  EXPECT_EQ(Text(error.UserInfo().StringForKey(RVError::LocalizedDescriptionKey())), "Failed to create file");

  EXPECT_EQ(translator.ParseFromFilePath(""), nullptr);
  EXPECT_EQ(translator.ParseFromFilePath(dir.Path().c_str()), nullptr);
  EXPECT_EQ(translator.ParseFromFilePath(dir.File("absent.json").c_str()), nullptr);
  EXPECT_EQ(log.Count(kParseFailed), 3);
}

}  // namespace
