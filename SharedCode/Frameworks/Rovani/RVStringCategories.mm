#import <Foundation/Foundation.h>

#include <Rovani/RVStringCategories.h>

@implementation NSMutableString (FindAndReplace)

- (void)replaceOccurrencesOfStringMB:(NSString*)target withString:(NSString*)replacement {
  if (target == nil || [target length] == 0) return;
  if (replacement == nil) replacement = @"";
  // A replacement that contains the target is refused outright rather than
  // risking a loop.
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
}

@end

@implementation NSString (FindAndReplace)

- (NSString*)stringByReplacingOccurrencesOfStringMB:(NSString*)target
                                         withString:(NSString*)replacement {
  NSMutableString* working = [NSMutableString stringWithString:self];
  [working replaceOccurrencesOfStringMB:target withString:replacement];
  return [NSString stringWithString:working];
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
