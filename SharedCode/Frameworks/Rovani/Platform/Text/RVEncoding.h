// The library's string-encoding codes on the platform.
#ifndef ROVANI_PLATFORM_RVENCODING_H
#define ROVANI_PLATFORM_RVENCODING_H

#import <Foundation/Foundation.h>

// The platform encoding for one of the library's encoding codes; any other
// code logs "Unhandled string encoding" and gives UTF-8.
NSStringEncoding RVPlatformEncodingForCode(unsigned int code);

// The text's bytes in the encoding of code, lossy where the encoding cannot
// hold a character; nil for nil or empty text, whose code is not looked at
// (so an unknown code logs nothing for it). Autoreleased.
NSData* RVEncodedBytes(NSString* text, unsigned int code);

#endif
