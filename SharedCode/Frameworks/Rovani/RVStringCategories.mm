#import <Foundation/Foundation.h>

#include <vector>

#include <Rovani/RVStringCategories.h>

namespace {

// Whether text holds a UTF-16 surrogate without its partner. GNUstep cannot
// copy such text: the copy is nil, and the object it allocated for it is
// lost, so the question is asked before anything is copied.
bool HoldsUnpairedSurrogate(NSString* text) {
  NSUInteger length = [text length];
  if (length == 0) return false;
  std::vector<unichar> units(length);
  [text getCharacters:units.data() range:NSMakeRange(0, length)];
  for (NSUInteger i = 0; i < length; ++i) {
    unichar unit = units[i];
    if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < length && units[i + 1] >= 0xDC00 &&
        units[i + 1] <= 0xDFFF) {
      ++i;
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      return true;
    }
  }
  return false;
}

}  // namespace

@implementation NSMutableString (FindAndReplace)

- (void)replaceOccurrencesOfStringMB:(NSString*)target withString:(NSString*)replacement {
  if (target == nil || [target length] == 0) return;
  if (replacement == nil) replacement = @"";
  // A receiver the platform cannot search (it raises, for instance on text
  // it cannot take apart) is left as it is.
  @try {
    // A replacement that contains the target is refused outright rather
    // than risking a loop.
    if ([replacement rangeOfString:target options:NSLiteralSearch].length != 0) return;

    NSRange found = [self rangeOfString:target
                                options:NSLiteralSearch
                                  range:NSMakeRange(0, [self length])];
    while (found.length != 0) {
      [self replaceCharactersInRange:found withString:replacement];
      NSUInteger start = found.location + [replacement length];
      found = [self rangeOfString:target
                          options:NSLiteralSearch
                            range:NSMakeRange(start, [self length] - start)];
    }
  } @catch (NSException*) {
  }
}

@end

@implementation NSString (FindAndReplace)

- (NSString*)stringByReplacingOccurrencesOfStringMB:(NSString*)target
                                         withString:(NSString*)replacement {
  // GNUstep cannot copy every string it holds: one with an unpaired UTF-16
  // surrogate copies to nil (and copying nil raises). Such a receiver, or
  // any the platform fails to search, answers itself unchanged.
  if (HoldsUnpairedSurrogate(self)) return self;
  NSMutableString* working = nil;
  NSString* result = nil;
  @try {
    working = [NSMutableString stringWithString:self];
    if (working != nil) {
      [working replaceOccurrencesOfStringMB:target withString:replacement];
      result = [NSString stringWithString:working];
    }
  } @catch (NSException*) {
    result = nil;
  }
  return result != nil ? result : self;
}

+ (NSString*)stringWithStringMB:(NSString*)source
    replacingOccurrencesOfString:(NSString*)target
                      withString:(NSString*)replacement {
  return [source stringByReplacingOccurrencesOfStringMB:target withString:replacement];
}

@end

@implementation NSString (localeIdentifier)

- (NSString*)languageCode {
  return [[NSLocale componentsFromLocaleIdentifier:self] objectForKey:NSLocaleLanguageCode];
}

- (NSString*)countryCode {
  return [[NSLocale componentsFromLocaleIdentifier:self] objectForKey:NSLocaleCountryCode];
}

@end
