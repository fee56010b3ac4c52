// Prints, for each property-list file named on the command line, the
// dictionary the library reads from it (read as a file and as data; both
// must agree) in the canonical text crosscheck.py prints for Python's
// reading, or "unreadable".
// With --write DIR SEED COUNT [binary] it writes COUNT random dictionaries
// into DIR (XML through RVDictionary::WriteToFile, dates floored to the
// second, or binary, dates to the microsecond), checks each reads back as
// written, and prints each file's name and canonical form.
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cfloat>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <Rovani/Rovani.h>

#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"

namespace {

bool gExactDates = false;  // microseconds, not seconds

std::string Hex(const void* bytes, size_t length) {
  std::string out;
  for (const unsigned char* p = static_cast<const unsigned char*>(bytes); length-- > 0; ++p)
    out += "0123456789abcdef"[*p >> 4], out += "0123456789abcdef"[*p & 15];
  return out;
}

std::string Utf8(NSString* s) {
  NSData* d = [s dataUsingEncoding:NSUTF8StringEncoding];
  return std::string(static_cast<const char*>([d bytes]), [d length]);
}

std::string Canonical(id object) {
  char buffer[64];
  if ([object isKindOfClass:[NSString class]]) return "s:" + Hex(Utf8(object).data(), Utf8(object).size());
  if ([object isKindOfClass:[NSData class]]) return "x:" + Hex([object bytes], [object length]);
  if ([object isKindOfClass:[NSDate class]]) {
    double seconds = [object timeIntervalSinceReferenceDate];
    if (gExactDates) snprintf(buffer, sizeof buffer, "t:%.6f", seconds);
    else snprintf(buffer, sizeof buffer, "t:%.0f", std::floor(seconds));
    return buffer;
  }
  if ([object isKindOfClass:objc_lookUpClass("BoolNumber")]) return [object boolValue] ? "b:1" : "b:0";
  if ([object isKindOfClass:[NSNumber class]]) {
    if (object == [NSNumber numberWithBool:YES]) return "b:1";
    if (object == [NSNumber numberWithBool:NO]) return "b:0";
    char type = [object objCType][0];
    if (type == 'f' || type == 'd') {
      double value = [object doubleValue];
      uint64_t bits;
      if (std::isnan(value)) return "r:nan";
      memcpy(&bits, &value, sizeof bits);
      snprintf(buffer, sizeof buffer, "r:%016" PRIx64, bits);
    } else if (type == 'Q' || type == 'L') snprintf(buffer, sizeof buffer, "i:%llu", [object unsignedLongLongValue]);
    else snprintf(buffer, sizeof buffer, "i:%lld", [object longLongValue]);
    return buffer;
  }
  if ([object isKindOfClass:[NSArray class]]) {
    std::string out = "[";
    for (NSUInteger i = 0; i < [object count]; ++i) out += (i ? "," : "") + Canonical([object objectAtIndex:i]);
    return out + "]";
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    std::vector<std::pair<std::string, std::string>> entries;
    for (NSString* key in object)
      entries.emplace_back(Utf8(key), Canonical([object objectForKey:key]));
    std::sort(entries.begin(), entries.end());
    std::string out = "{";
    for (size_t i = 0; i < entries.size(); ++i)
      out += (i ? "," : "") + Hex(entries[i].first.data(), entries[i].first.size()) + "=" + entries[i].second;
    return out + "}";
  }
  return "?";
}

// Random property lists with the values writers get wrong: characters
// beyond U+FFFF, CR, leading U+FEFF, markup, empty keys, extreme and
// special reals, 64-bit integers at both ends, dates with fractions over
// years 1 to 9999, and both kinds of boolean.
class RandomLists {
 public:
  explicit RandomLists(unsigned seed) : random_(seed) {}

  NSDictionary* Dictionary(int depth) {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (int i = Below(depth == 0 ? 12 : 5); i > 0; --i)
      [dictionary setObject:Value(depth + 1) forKey:Text()];
    return dictionary;
  }

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<uint64_t>(n)); }

  NSString* Text() {
    static const char16_t* const kPieces[] = {
        u"a", u"Z", u" ", u"&", u"<", u">", u"]]>", u"\"", u"'", u"\t", u"\n", u"\r",
        u"\u00e9", u"\u4e16", u"\uFEFF", u"\U0001F600", u"\U0002A6D6", u"\U000E0001",
        u"\U0010FFFD", u"\uFFFD", u"\\U0041"};
    std::u16string text;
    for (int i = Below(7); i > 0; --i) text += kPieces[Below(sizeof kPieces / sizeof *kPieces)];
    // UTF-16 with an explicit byte order keeps a leading U+FEFF.
    return [[[NSString alloc] initWithBytes:text.data() length:text.size() * 2
                                   encoding:NSUTF16LittleEndianStringEncoding] autorelease];
  }

  NSNumber* Integer() {
    static const long long kWidths[] = {255, 256, 65535, 65536, 4294967295, 4294967296};
    switch (Below(7)) {
      case 6: return [NSNumber numberWithLongLong:kWidths[Below(6)]];
      case 0: return [NSNumber numberWithLongLong:INT64_MIN];
      case 1: return [NSNumber numberWithLongLong:INT64_MAX];
      case 2: return [NSNumber numberWithUnsignedLongLong:UINT64_MAX];
      case 3: return [NSNumber numberWithUnsignedLongLong:random_() | (1ull << 63)];
      case 4: return [NSNumber numberWithInt:Below(2001) - 1000];
      default: return [NSNumber numberWithLongLong:static_cast<long long>(random_())];
    }
  }

  NSNumber* Real() {
    static const double kSpecial[] = {DBL_MAX, -DBL_MAX, DBL_MIN, DBL_TRUE_MIN, -DBL_TRUE_MIN,
                                      -0.0, 0.0, 1e-310, 0.1, 123456789.12345679, HUGE_VAL, -HUGE_VAL, NAN};
    switch (Below(4)) {
      case 0: return [NSNumber numberWithDouble:kSpecial[Below(sizeof kSpecial / sizeof *kSpecial)]];
      case 1: return [NSNumber numberWithFloat:static_cast<float>(Below(1 << 20)) / 7.0f];
      default: {
        uint64_t bits = random_();
        double value;
        memcpy(&value, &bits, sizeof value);
        return [NSNumber numberWithDouble:std::isfinite(value) ? value : 1.5];
      }
    }
  }

  id Value(int depth) {
    int kinds = depth < 4 ? 9 : 7;
    switch (Below(kinds)) {
      case 0: case 6: return Text();
      case 1: return Integer();
      case 2: return Real();
      case 3: return Below(2) ? [NSNumber numberWithBool:Below(2)]
                              : (Below(2) ? trueBoolNumberConst : falseBoolNumberConst);
      case 4: {
        // Years 1 to 9999, with a fraction of a second.
        std::uniform_real_distribution<double> seconds(-63113904000.0, 252423993599.0);
        return [NSDate dateWithTimeIntervalSinceReferenceDate:seconds(random_) + Below(1000) / 1000.0];
      }
      case 5: {
        std::string bytes;
        for (int i = Below(40); i > 0; --i) bytes += static_cast<char>(random_());
        return [NSData dataWithBytes:bytes.data() length:bytes.size()];
      }
      case 7: return Dictionary(depth);
      default: {
        NSMutableArray* array = [NSMutableArray array];
        for (int i = Below(5); i > 0; --i) [array addObject:Value(depth + 1)];
        return array;
      }
    }
  }

  std::mt19937_64 random_;
};

int WriteRandomLists(const char* dir, unsigned seed, int count, bool binary) {
  gExactDates = binary;
  RVBool::True();  // the library's shared booleans exist from here on
  RVBool::False();
  RandomLists lists(seed);
  int status = 0;
  for (int i = 0; i < count; ++i) {
    RVAutoreleasePool pool;
    NSMutableDictionary* list = [lists.Dictionary(0) mutableCopy];
    if (i == 0) {  // as deep as a list may go
      id deep = @"bottom";
      for (int level = 0; level < 255; ++level) deep = level % 2 ? @{@"" : deep} : @[ deep ];
      [list setObject:deep forKey:@"deep"];
    }
    RVDictionary written([list autorelease]);
    std::string path = std::string(dir) + "/list-" + std::to_string(i) + ".plist";
    std::string canonical = Canonical(written.Ref());
    NSData* bytes = binary ? RVBinaryPropertyListData(written.Ref()) : nil;
    if (binary ? ![bytes writeToFile:@(path.c_str()) atomically:NO] : !written.WriteToFile(path.c_str())) {
      printf("%s\twrite failed\n", path.c_str());
      status = 1;
      continue;
    }
    RVDictionary back = RVDictionary::DictionaryWithContentsOfFile(path.c_str());
    if (back.Ref() == nil || Canonical(back.Ref()) != canonical) {
      printf("%s\treads back different: %s\n", path.c_str(),
             back.Ref() == nil ? "unreadable" : Canonical(back.Ref()).c_str());
      status = 1;
    }
    printf("%s\t%s\n", path.c_str(), canonical.c_str());
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if ((argc == 5 || argc == 6) && strcmp(argv[1], "--write") == 0) {
    RVAutoreleasePool pool;
    return WriteRandomLists(argv[2], static_cast<unsigned>(atoi(argv[3])), atoi(argv[4]),
                            argc == 6 && strcmp(argv[5], "binary") == 0);
  }
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    RVAutoreleasePool pool;
    RVString path(argv[i]);
    RVDictionary fromFile = RVDictionary::DictionaryWithContentsOfFile(path);
    RVDictionary fromData{RVData::DataWithContentsOfFile(path)};
    std::string text = fromFile.Ref() == nil ? "unreadable" : Canonical(fromFile.Ref());
    std::string other = fromData.Ref() == nil ? "unreadable" : Canonical(fromData.Ref());
    if (text != other) status = 1;
    if (text != other) printf("%s\tfile and data differ: %s / %s\n", argv[i], text.c_str(), other.c_str());
    else printf("%s\t%s\n", argv[i], text.c_str());
  }
  return status;
}
