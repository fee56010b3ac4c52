// The library's string-encoding codes on the platform.
#ifndef ROVANI_PLATFORM_RVENCODING_H
#define ROVANI_PLATFORM_RVENCODING_H

#import <Foundation/Foundation.h>

// The platform encoding for one of the library's encoding codes; any other
// code logs "Unhandled string encoding" and gives UTF-8.
NSStringEncoding RVPlatformEncodingForCode(unsigned int code);

#endif
