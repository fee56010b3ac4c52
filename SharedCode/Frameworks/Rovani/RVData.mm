#import <Foundation/Foundation.h>

#include <cstring>

#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>

#include "Platform/Files/RVAtomicFile.h"
#include "Platform/Collections/RVChangedCopy.h"
#include "Platform/Runtime/RVClassType.h"
#include "Platform/Text/RVEncoding.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/Runtime/RVOwned.h"

RVData::RVData() : RVObject() {}
RVData::RVData(const RVData& other) : RVObject(other) {}
RVData::RVData(const RVObject& other) : RVObject(other) {}
RVData::RVData(RVId obj) : RVObject(obj) {}
RVData::RVData(NSData* data) : RVObject(data) {}
RVData::RVData(RVString string) : RVObject() { operator=(string); }
RVData::RVData(const RVDictionary& dictionary) : RVObject() { operator=(dictionary); }
RVData::~RVData() {}

RVData& RVData::operator=(RVData other) {
  RVObject::operator=(other.Ref());
  return *this;
}
RVData& RVData::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}
RVData& RVData::operator=(NSData* data) {
  RVObject::operator=(data);
  return *this;
}

RVData& RVData::operator=(RVString string) {
  Empty();
  // The UTF-8 bytes up to the first NUL, without one of their own; empty
  // text leaves the handle empty. The platform's encoded bytes are
  // immutable, so they are held as they are when there is no NUL.
  NSData* utf8 = RVEncodedBytes(string.Ref(), kRVStringEncodingUTF8);
  const char* bytes = static_cast<const char*>([utf8 bytes]);
  const NSUInteger length = [utf8 length];
  if (length == 0) return *this;  // nil, empty, or no bytes at all
  const void* zero = memchr(bytes, 0, length);
  if (zero == nullptr)
    RVObject::operator=(utf8);
  else
    InitWithBytes(bytes, static_cast<unsigned int>(static_cast<const char*>(zero) - bytes));
  return *this;
}

// A dictionary the property-list writer refuses (nil, or holding what the
// format cannot hold) leaves the handle empty.
RVData& RVData::operator=(const RVDictionary& dictionary) {
  RVObject::operator=(RVPropertyListXMLData(dictionary.Ref()));
  return *this;
}

RVData::operator NSData*() const { return Ref(); }

RVString RVData::ClassType() { return RVString(RVClassTypeText(typeid(RVData))); }

bool RVData::IsEmpty() const { return [Ref() length] == 0; }

void RVData::Empty() { Release(); }

void RVData::InitWithString(RVString string) { operator=(string); }

void RVData::InitWithDictionary(const RVDictionary& dictionary) { operator=(dictionary); }

void RVData::InitWithData(RVData other) { operator=(other.Ref()); }

void RVData::InitWithLength(unsigned int length) {
  RVObject::operator=(RVAdopt([[NSMutableData alloc] initWithLength:length]).Get());
}

void RVData::InitWithBytes(const void* bytes, unsigned int length) {
  RVObject::operator=(RVAdopt([[NSData alloc] initWithBytes:bytes length:length]).Get());
}

void RVData::InitWithStringUsingEncoding(RVString string, unsigned int code) {
  Empty();
  RVObject::operator=(RVEncodedBytes(string.Ref(), code));
}

void RVData::InitWithContentsOfFile(RVString path) {
  RVObject::operator=([NSData dataWithContentsOfFile:path.Ref()]);
}

RVData RVData::DataWithLength(unsigned int length) {
  RVData data;
  data.InitWithLength(length);
  return data;
}

RVData RVData::DataWithBytes(const void* bytes, unsigned int length) {
  return RVData(static_cast<NSData*>([NSData dataWithBytes:bytes length:length]));
}

RVData RVData::DataWithStringUsingEncoding(RVString string, unsigned int code) {
  RVData data;
  data.InitWithStringUsingEncoding(string, code);
  return data;
}

RVData RVData::DataWithContentsOfFile(RVString path) {
  RVData data;
  data.InitWithContentsOfFile(path);
  return data;
}

unsigned int RVData::Length() const { return static_cast<unsigned int>([Ref() length]); }
const void* RVData::Bytes() const { return [Ref() bytes]; }
const char* RVData::CharPointer() const { return static_cast<const char*>([Ref() bytes]); }
const wchar_t* RVData::WideCharPointer() const {
  return static_cast<const wchar_t*>([Ref() bytes]);
}
void* RVData::MutableBytes() const { return [Ref() mutableBytes]; }
void RVData::GetBytes(void* buffer) const { [Ref() getBytes:buffer]; }
void RVData::GetBytesWithLength(void* buffer, unsigned int length) const {
  [Ref() getBytes:buffer length:length];
}
void RVData::GetBytesWithRange(void* buffer, RVRange range) const {
  [Ref() getBytes:buffer range:(NSRange)range];
}
RVRange RVData::Range() const { return RVRange(0, Length()); }
RVData RVData::SubdataWithRange(const RVRange& range) const {
  return RVData(static_cast<NSData*>([Ref() subdataWithRange:(NSRange)range]));
}

void RVData::AppendData(RVData other) {
  // other is a handle of its own: appending data to itself copies, since
  // the object then has two holders.
  RVChangeHeld(*this, RVStoreKind::kData,
               [&](NSMutableData* working) { [working appendData:other.Ref()]; });
}

void RVData::AppendString(RVString string) {
  AppendData(string.DataContainingStringUsingEncoding(kRVStringEncodingUTF8));
}

bool RVData::WriteToFile(RVString path) const {
  return [Ref() writeToFile:path.Ref() atomically:NO] ? true : false;
}

bool RVData::WriteToFileAtomically(RVString path) const {
  return RVWriteDataToFileAtomically(Ref(), path.Ref());
}
