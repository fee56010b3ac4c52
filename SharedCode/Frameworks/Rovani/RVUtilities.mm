#import <Foundation/Foundation.h>

#include <openssl/md5.h>

#include <cstdarg>
#include <cstdint>

#include <Rovani/RVData.h>
#include <Rovani/RVUtilities.h>

#include "Platform/CoreFoundation/RVUUID.h"

void RVLog(RVString format, ...) {
  va_list args;
  va_start(args, format);
  NSLogv(format.Ref(), args);
  va_end(args);
}

// Logs in every build, exactly as RVLog does.
void DebugLog(RVString format, ...) {
  va_list args;
  va_start(args, format);
  NSLogv(format.Ref(), args);
  va_end(args);
}

// ---------------------------------------------------------------------------
// Hash and UUIDs

int RVUtilities::Hash(const RVString& text) {
  MD5_CTX* context = new MD5_CTX;
  MD5_Init(context);
  // Lossy UTF-8 without a terminator; empty text gives no bytes.
  RVData bytes = RVData::DataWithStringUsingEncoding(text, kRVStringEncodingUTF8);
  MD5_Update(context, bytes.Bytes(), bytes.Length());
  unsigned char digest[MD5_DIGEST_LENGTH] = {0};
  MD5_Final(digest, context);
  delete context;
  uint32_t hash = (static_cast<uint32_t>(digest[0]) << 24) |
                  (static_cast<uint32_t>(digest[1]) << 16) |
                  (static_cast<uint32_t>(digest[2]) << 8) | static_cast<uint32_t>(digest[3]);
  return static_cast<int>(hash);
}

RVString RVUtilities::HashAsString(const RVString& text) {
  uint32_t hash = static_cast<uint32_t>(Hash(text));
  NSString* digits = [NSString stringWithFormat:@"%02X%02X%02X%02X", (hash >> 24) & 0xFFu,
                                                (hash >> 16) & 0xFFu, (hash >> 8) & 0xFFu,
                                                hash & 0xFFu];
  return RVString(digits);
}

RVString RVUtilities::CreateUUID() {
  RVString result;
  CFUUIDRef uuid = CFUUIDCreate(nullptr);
  CFStringRef text = CFUUIDCreateString(nullptr, uuid);
  result = static_cast<NSString*>([(id)text autorelease]);
  CFRelease(uuid);
  return result;
}
