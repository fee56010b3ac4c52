// RVString: paths, percent escapes, and the bytes of a string in the
// library's encodings (the members that convert between text and data).
#import <Foundation/Foundation.h>

#include <cstdlib>
#include <cstring>

#include <Rovani/RVData.h>
#include <Rovani/RVString.h>

#include "Platform/CoreFoundation/RVCoreFoundation.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Text/RVEncoding.h"

// ---------------------------------------------------------------------------
// Paths and percent escapes

RVString RVString::StringByDeletingLastPathComponent() const {
  return RVString(static_cast<RVId>([Ref() stringByDeletingLastPathComponent]));
}

RVString RVString::StringByDeletingPathExtension() const {
  return RVString(static_cast<RVId>([Ref() stringByDeletingPathExtension]));
}

RVString RVString::LastPathComponent() const {
  return RVString(static_cast<RVId>([Ref() lastPathComponent]));
}

RVString RVString::PathExtension() const {
  return RVString(static_cast<RVId>([Ref() pathExtension]));
}

RVString RVString::StringByAppendingPathComponent(const RVString& component) const {
  NSString* base = IsEmpty() ? @"" : Ref();
  return RVString(static_cast<RVId>([base stringByAppendingPathComponent:component.Ref()]));
}

RVString RVString::StringByAppendingPathExtension(const RVString& extension) const {
  NSString* base = IsEmpty() ? @"" : Ref();
  return RVString(static_cast<RVId>([base stringByAppendingPathExtension:extension.Ref()]));
}

RVString RVString::StringByAddingPercentEscapes() const {
  return RVString(
      static_cast<RVId>([Ref() stringByAddingPercentEscapesUsingEncoding:NSUTF8StringEncoding]));
}

RVString RVString::StringByAddingPercentEscapesSpecifyingEscapeCharacters(
    RVString escapeCharacters) const {
  CFStringRef made = CFURLCreateStringByAddingPercentEscapes(
      nullptr, (CFStringRef)Ref(), nullptr, (CFStringRef)escapeCharacters.Ref(),
      kCFStringEncodingUTF8);
  return RVString(static_cast<RVId>([(id)made autorelease]));
}

// ---------------------------------------------------------------------------
// Makers from C strings in an encoding

RVString RVString::StringWithCStringUsingEncoding(const char* bytes, unsigned int code) {
  if (bytes == nullptr) return RVString();
  NSStringEncoding encoding = RVPlatformEncodingForCode(code);
  return RVString(RVAdopt([[NSString alloc] initWithCString:bytes encoding:encoding]).Get());
}

RVString RVString::StringWithCStringUsingEncoding(const unsigned char* bytes, unsigned int code) {
  if (bytes == nullptr) return RVString();
  return StringWithCStringUsingEncoding(reinterpret_cast<const char*>(bytes), code);
}

// ---------------------------------------------------------------------------
// Bytes

RVString::RVString(const RVData& data) : RVObject() { operator=(data); }

RVString& RVString::operator=(const RVData& data) {
  unsigned int length = data.Length();
  const char* bytes = data.CharPointer();
  // A trailing zero byte marks a C string: only the text before the first
  // zero is used. Without one, every byte is decoded.
  if (length > 0 && bytes[length - 1] == 0) length = static_cast<unsigned int>(strlen(bytes));
  RVOwned<> made = RVAdopt([[NSString alloc] initWithBytes:bytes
                                                   length:length
                                                 encoding:NSUTF8StringEncoding]);
  RVObject::operator=(made.Get());
  return *this;
}

RVData RVString::DataContainingStringUsingEncoding(unsigned int code) const {
  return RVData::DataWithStringUsingEncoding(*this, code);
}

RVData RVString::DataContainingCStringUsingEncoding(unsigned int code) const {
  NSData* encoded = RVEncodedBytes(Ref(), code);
  const NSUInteger zeros = code == kRVStringEncodingUnicode ? 2 : 1;
  const NSUInteger length = [encoded length];
  char* bytes = static_cast<char*>(malloc(length + zeros));
  if (length > 0) memcpy(bytes, [encoded bytes], length);
  memset(bytes + length, 0, zeros);
  return RVData(static_cast<NSData*>(
      RVAdopt([[NSData alloc] initWithBytesNoCopy:bytes length:length + zeros freeWhenDone:YES])
          .Get()));
}

RVData RVString::DataContainingUTF8CString() const {
  return DataContainingCStringUsingEncoding(kRVStringEncodingUTF8);
}
RVData RVString::DataContainingUnicodeCString() const {
  return DataContainingCStringUsingEncoding(kRVStringEncodingUnicode);
}
RVData RVString::DataContainingMacOSRomanCString() const {
  return DataContainingCStringUsingEncoding(kRVStringEncodingMacOSRoman);
}
RVData RVString::DataContainingWindowsLatin1CString() const {
  return DataContainingCStringUsingEncoding(kRVStringEncodingWindowsLatin1);
}
RVData RVString::DataContainingASCIICString() const {
  return DataContainingCStringUsingEncoding(kRVStringEncodingASCII);
}
