// Prints, for each property-list file named on the command line, the
// dictionary the library reads from it in a canonical text form (the one
// crosscheck.py prints for Python's reading), or "unreadable".
// The file is read twice, as a file and as data; both must agree.
#import <Foundation/Foundation.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <Rovani/Rovani.h>

namespace {

std::string Hex(const void* bytes, size_t length) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  const unsigned char* p = static_cast<const unsigned char*>(bytes);
  for (size_t i = 0; i < length; ++i) {
    out += kDigits[p[i] >> 4];
    out += kDigits[p[i] & 15];
  }
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
    snprintf(buffer, sizeof buffer, "t:%.0f", [object timeIntervalSinceReferenceDate]);
    return buffer;
  }
  if ([object isKindOfClass:[NSNumber class]]) {
    if (object == [NSNumber numberWithBool:YES]) return "b:1";
    if (object == [NSNumber numberWithBool:NO]) return "b:0";
    char type = [object objCType][0];
    if (type == 'f' || type == 'd') {
      double value = [object doubleValue];
      uint64_t bits;
      memcpy(&bits, &value, sizeof bits);
      if (std::isnan(value)) return "r:nan";
      snprintf(buffer, sizeof buffer, "r:%016" PRIx64, bits);
    } else if (type == 'Q' || type == 'L') {
      snprintf(buffer, sizeof buffer, "i:%llu", [object unsignedLongLongValue]);
    } else {
      snprintf(buffer, sizeof buffer, "i:%lld", [object longLongValue]);
    }
    return buffer;
  }
  if ([object isKindOfClass:[NSArray class]]) {
    std::string out = "[";
    for (NSUInteger i = 0; i < [object count]; ++i) {
      if (i > 0) out += ",";
      out += Canonical([object objectAtIndex:i]);
    }
    return out + "]";
  }
  if ([object isKindOfClass:[NSDictionary class]]) {
    std::vector<std::pair<std::string, std::string>> entries;
    for (NSString* key in object)
      entries.emplace_back(Utf8(key), Canonical([object objectForKey:key]));
    std::sort(entries.begin(), entries.end());
    std::string out = "{";
    for (size_t i = 0; i < entries.size(); ++i) {
      if (i > 0) out += ",";
      out += Hex(entries[i].first.data(), entries[i].first.size()) + "=" + entries[i].second;
    }
    return out + "}";
  }
  return "?";
}

}  // namespace

int main(int argc, char** argv) {
  int status = 0;
  for (int i = 1; i < argc; ++i) {
    RVAutoreleasePool pool;
    RVString path(argv[i]);
    RVDictionary fromFile = RVDictionary::DictionaryWithContentsOfFile(path);
    RVDictionary fromData{RVData::DataWithContentsOfFile(path)};
    std::string text = fromFile.Ref() == nil ? "unreadable" : Canonical(fromFile.Ref());
    std::string other = fromData.Ref() == nil ? "unreadable" : Canonical(fromData.Ref());
    if (text != other) {
      printf("%s\tfile and data differ: %s / %s\n", argv[i], text.c_str(), other.c_str());
      status = 1;
    } else {
      printf("%s\t%s\n", argv[i], text.c_str());
    }
  }
  return status;
}
