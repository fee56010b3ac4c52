#import <Foundation/Foundation.h>

#include <Rovani/RVString.h>
#include <Rovani/RVUtilities.h>

#include "Platform/Text/RVEncoding.h"

NSStringEncoding RVPlatformEncodingForCode(unsigned int code) {
  switch (code) {
    case kRVStringEncodingUTF8:
      return NSUTF8StringEncoding;
    case kRVStringEncodingUnicode:
      return NSUnicodeStringEncoding;
    case kRVStringEncodingMacOSRoman:
      return NSMacOSRomanStringEncoding;
    case kRVStringEncodingWindowsLatin1:
      return NSWindowsCP1252StringEncoding;
    case kRVStringEncodingASCII:
      return NSASCIIStringEncoding;
    default:
      RVLog("Unhandled string encoding");
      return NSUTF8StringEncoding;
  }
}

NSData* RVEncodedBytes(NSString* text, unsigned int code) {
  if ([text length] == 0) return nil;
  return [text dataUsingEncoding:RVPlatformEncodingForCode(code) allowLossyConversion:YES];
}
