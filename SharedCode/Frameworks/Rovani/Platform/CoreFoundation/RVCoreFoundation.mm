#import <Foundation/Foundation.h>

#include <cstring>

#include "Platform/CoreFoundation/RVCoreFoundation.h"
#include "Platform/Runtime/RVHandleTable.h"
#include "Platform/Runtime/RVOwned.h"

void CFRelease(CFTypeRef ref) { [(id)ref release]; }

CFTypeRef CFRetain(CFTypeRef ref) { return (CFTypeRef)[(id)ref retain]; }

namespace {

enum : CFTypeID {
  kOtherTypeID = 0,
  kStringTypeID,
  kArrayTypeID,
  kDictionaryTypeID,
  kDataTypeID,
  kDateTypeID,
  kNumberTypeID,
  kBooleanTypeID,
  kURLTypeID,
  kBundleTypeID,
  kDateFormatterTypeID,
};

}  // namespace

CFTypeID CFStringGetTypeID() { return kStringTypeID; }
CFTypeID CFArrayGetTypeID() { return kArrayTypeID; }
CFTypeID CFDictionaryGetTypeID() { return kDictionaryTypeID; }
CFTypeID CFDataGetTypeID() { return kDataTypeID; }
CFTypeID CFDateGetTypeID() { return kDateTypeID; }
CFTypeID CFNumberGetTypeID() { return kNumberTypeID; }
CFTypeID CFBooleanGetTypeID() { return kBooleanTypeID; }
CFTypeID CFURLGetTypeID() { return kURLTypeID; }
CFTypeID CFBundleGetTypeID() { return kBundleTypeID; }
CFTypeID CFDateFormatterGetTypeID() { return kDateFormatterTypeID; }

CFTypeID CFGetTypeID(CFTypeRef ref) {
  const RVHandleKind* kind = RVHandleKindFor((id)ref);
  return kind != nullptr ? kind->typeID : kOtherTypeID;
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
  RVOwned<NSMutableCharacterSet*> owned = RVAdopt([[NSMutableCharacterSet alloc] init]);
  NSMutableCharacterSet* allowed = owned.Get();
  [allowed addCharactersInRange:NSMakeRange('a', 26)];
  [allowed addCharactersInRange:NSMakeRange('A', 26)];
  [allowed addCharactersInRange:NSMakeRange('0', 10)];
  [allowed addCharactersInString:kLegalURLMarks];
  if (legalToEscape != nullptr) [allowed removeCharactersInString:(NSString*)legalToEscape];
  if (leaveUnescaped != nullptr) [allowed addCharactersInString:(NSString*)leaveUnescaped];
  NSString* escaped =
      [(NSString*)string stringByAddingPercentEncodingWithAllowedCharacters:allowed];
  return (CFStringRef)[escaped retain];
}
