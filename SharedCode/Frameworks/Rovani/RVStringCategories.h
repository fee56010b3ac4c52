/// \file
/// Methods the library adds to the platform's string classes. Objective-C
/// only: in plain C++ this header declares nothing, so this manual lists
/// no member of it.
///
/// - `-[NSMutableString replaceOccurrencesOfStringMB:withString:]`,
///   `-[NSString stringByReplacingOccurrencesOfStringMB:withString:]` and
///   `+[NSString stringWithStringMB:replacingOccurrencesOfString:withString:]`
///   (category `FindAndReplace`): replace-all with fixed rules: literal,
///   case-sensitive matching, left to right, without overlap; inserted text
///   is never searched again. A nil or empty target changes nothing, a nil
///   replacement counts as "", and nothing at all is replaced when the
///   replacement itself contains the target.
///   RVString::StringByReplacingOccurrencesOfStringWithString() uses them.
/// - `-[NSString languageCode]` and `-[NSString countryCode]` (category
///   `localeIdentifier`): the receiver is a locale identifier such as
///   "en_US"; they answer its language ("en") and country ("US") parts, or
///   nil when the identifier has no such part.
#ifndef ROVANI_RVSTRINGCATEGORIES_H
#define ROVANI_RVSTRINGCATEGORIES_H

#include <Rovani/RVDefines.h>

#if defined(__OBJC__)
#import <Foundation/NSString.h>

// Replace-all with fixed rules: literal, case-sensitive matching, left to
// right, without overlap; inserted text is never searched again. A nil or
// empty target changes nothing, a nil replacement counts as "", and nothing
// at all is replaced when the replacement itself contains the target.
@interface NSMutableString (FindAndReplace)
- (void)replaceOccurrencesOfStringMB:(NSString*)target withString:(NSString*)replacement;
@end

@interface NSString (FindAndReplace)
- (NSString*)stringByReplacingOccurrencesOfStringMB:(NSString*)target
                                         withString:(NSString*)replacement;
+ (NSString*)stringWithStringMB:(NSString*)source
    replacingOccurrencesOfString:(NSString*)target
                      withString:(NSString*)replacement;
@end

// The receiver is a locale identifier such as "en_US".
@interface NSString (localeIdentifier)
- (NSString*)languageCode;
- (NSString*)countryCode;
@end

#endif

#endif
