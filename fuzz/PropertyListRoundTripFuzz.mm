// Bytes that read as a property list write as XML and read back as the
// same list (dates to the second, the format's precision), or the write
// refuses the list whole. Either read may fail; nothing may crash, and a
// written list that reads back different stops the run.
#import <Foundation/Foundation.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

namespace {

bool SameText(NSString* a, NSString* b) {
  NSUInteger length = [a length];
  if ([b length] != length) return false;
  std::vector<unichar> x(length), y(length);
  [a getCharacters:x.data() range:NSMakeRange(0, length)];
  [b getCharacters:y.data() range:NSMakeRange(0, length)];
  return x == y;
}

bool IsBoolean(id n) {
  return n == [NSNumber numberWithBool:YES] || n == [NSNumber numberWithBool:NO];
}

bool SameNumber(NSNumber* a, NSNumber* b) {
  if (IsBoolean(a) || IsBoolean(b)) return a == b;
  char ta = [a objCType][0], tb = [b objCType][0];
  bool realA = ta == 'f' || ta == 'd', realB = tb == 'f' || tb == 'd';
  if (realA != realB) return false;
  if (realA) {
    double x = [a doubleValue], y = [b doubleValue];
    return (std::isnan(x) && std::isnan(y)) || memcmp(&x, &y, sizeof x) == 0;
  }
  bool bigA = strchr("QLIS", ta) != nullptr && [a unsignedLongLongValue] > INT64_MAX;
  bool bigB = strchr("QLIS", tb) != nullptr && [b unsignedLongLongValue] > INT64_MAX;
  if (bigA || bigB) return bigA && bigB && [a unsignedLongLongValue] == [b unsignedLongLongValue];
  return [a longLongValue] == [b longLongValue];
}

bool Same(id a, id b) {
  if ([a isKindOfClass:[NSString class]])
    return [b isKindOfClass:[NSString class]] && SameText(a, b);
  if ([a isKindOfClass:[NSNumber class]])
    return [b isKindOfClass:[NSNumber class]] && SameNumber(a, b);
  if ([a isKindOfClass:[NSDate class]])
    return [b isKindOfClass:[NSDate class]] &&
           std::floor([a timeIntervalSinceReferenceDate]) == [b timeIntervalSinceReferenceDate];
  if ([a isKindOfClass:[NSData class]]) return [b isKindOfClass:[NSData class]] && [a isEqualToData:b];
  if ([a isKindOfClass:[NSArray class]]) {
    if (![b isKindOfClass:[NSArray class]] || [a count] != [b count]) return false;
    for (NSUInteger i = 0; i < [a count]; ++i)
      if (!Same([a objectAtIndex:i], [b objectAtIndex:i])) return false;
    return true;
  }
  if ([a isKindOfClass:[NSDictionary class]]) {
    if (![b isKindOfClass:[NSDictionary class]] || [a count] != [b count]) return false;
    for (NSString* key in a) {
      id other = [b objectForKey:key];
      if (other == nil || !Same([a objectForKey:key], other)) return false;
    }
    return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  rovani_fuzz::Quiet();
  @autoreleasepool {
    id first = RVPropertyListFromBytes(data, size);
    std::string text;
    if (first == nil || !RVXMLPropertyListWrite(first, &text)) return 0;
    id second = RVPropertyListFromBytes(text.data(), text.size());
    if (second == nil || !Same(first, second)) {
      fprintf(stderr, "written list reads back different:\n%s\n", text.c_str());
      abort();
    }
  }
  return 0;
}
