// Whether two property lists are the same list: text unit for unit,
// integers and reals apart, every bit of a real (any NaN alike), booleans
// as booleans, dates to the second when a format keeps only seconds.
#ifndef ROVANI_FUZZ_PROPERTYLISTSAME_H
#define ROVANI_FUZZ_PROPERTYLISTSAME_H

#import <Foundation/Foundation.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace rovani_fuzz {

inline bool SameText(NSString* a, NSString* b) {
  NSUInteger length = [a length];
  if ([b length] != length) return false;
  std::vector<unichar> x(length), y(length);
  [a getCharacters:x.data() range:NSMakeRange(0, length)];
  [b getCharacters:y.data() range:NSMakeRange(0, length)];
  return x == y;
}

inline bool IsBoolean(id n) {
  return n == [NSNumber numberWithBool:YES] || n == [NSNumber numberWithBool:NO];
}

inline bool SameNumber(NSNumber* a, NSNumber* b) {
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

inline bool Same(id a, id b, bool secondsOnly) {
  if ([a isKindOfClass:[NSString class]])
    return [b isKindOfClass:[NSString class]] && SameText(a, b);
  if ([a isKindOfClass:[NSNumber class]])
    return [b isKindOfClass:[NSNumber class]] && SameNumber(a, b);
  if ([a isKindOfClass:[NSDate class]])
    return [b isKindOfClass:[NSDate class]] &&
           (secondsOnly ? std::floor([a timeIntervalSinceReferenceDate])
                        : [a timeIntervalSinceReferenceDate]) == [b timeIntervalSinceReferenceDate];
  if ([a isKindOfClass:[NSData class]]) return [b isKindOfClass:[NSData class]] && [a isEqualToData:b];
  if ([a isKindOfClass:[NSArray class]]) {
    if (![b isKindOfClass:[NSArray class]] || [a count] != [b count]) return false;
    for (NSUInteger i = 0; i < [a count]; ++i)
      if (!Same([a objectAtIndex:i], [b objectAtIndex:i], secondsOnly)) return false;
    return true;
  }
  if ([a isKindOfClass:[NSDictionary class]]) {
    if (![b isKindOfClass:[NSDictionary class]] || [a count] != [b count]) return false;
    for (NSString* key in a) {
      id other = [b objectForKey:key];
      if (other == nil || !Same([a objectForKey:key], other, secondsOnly)) return false;
    }
    return true;
  }
  return false;
}

}  // namespace rovani_fuzz

#endif
