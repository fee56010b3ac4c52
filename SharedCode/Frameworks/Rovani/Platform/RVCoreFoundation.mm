#import <Foundation/Foundation.h>

#include "Platform/RVCoreFoundation.h"

void CFRelease(CFTypeRef ref) { [(id)ref release]; }

CFTypeRef CFRetain(CFTypeRef ref) { return (CFTypeRef)[(id)ref retain]; }

CFTypeID CFStringGetTypeID() { return 1; }

CFTypeID CFGetTypeID(CFTypeRef ref) {
  id obj = (id)ref;
  if ([obj isKindOfClass:[NSString class]]) return CFStringGetTypeID();
  return 0;
}

namespace {

// What Core Foundation counts as legal in a URL: letters, digits and the
// reserved and unreserved marks. Everything else is always escaped.
NSString* const kLegalURLMarks = @"-_.~!*'();:@&=+$,/?%#[]";

}  // namespace

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef string,
                                                    CFStringRef leaveUnescaped,
                                                    CFStringRef legalToEscape,
                                                    CFStringEncoding) {
  if (string == nullptr) return nullptr;
  NSMutableCharacterSet* allowed = [[NSMutableCharacterSet alloc] init];
  [allowed addCharactersInRange:NSMakeRange('a', 26)];
  [allowed addCharactersInRange:NSMakeRange('A', 26)];
  [allowed addCharactersInRange:NSMakeRange('0', 10)];
  [allowed addCharactersInString:kLegalURLMarks];
  if (legalToEscape != nullptr) [allowed removeCharactersInString:(NSString*)legalToEscape];
  if (leaveUnescaped != nullptr) [allowed addCharactersInString:(NSString*)leaveUnescaped];
  NSString* escaped =
      [(NSString*)string stringByAddingPercentEncodingWithAllowedCharacters:allowed];
  [allowed release];
  return (CFStringRef)[escaped retain];
}
