#import <Foundation/Foundation.h>

#include <Rovani/RVBool.h>
#include <Rovani/RVPropertyList.h>

#include "Platform/PropertyLists/RVBinaryPropertyListWriter.h"
#include "Platform/PropertyLists/RVPropertyList.h"
#include "Platform/PropertyLists/RVXMLPropertyListWriter.h"

namespace {

void Fill(RVFormatError* error, const RVFormatFault& fault, RVDocumentFormat format) {
  error->message = fault.message;
  error->line = fault.line;
  error->column = fault.column;
  error->byteOffset = fault.byteOffset;
  error->keyPath = fault.keyPath;
  error->format = format;
}

RVDocumentFormat FormatOf(RVPropertyListKind kind) {
  switch (kind) {
    case kRVPropertyListXML:
      return RVDocumentFormat::kXMLPropertyList;
    case kRVPropertyListBinary:
      return RVDocumentFormat::kBinaryPropertyList;
    default:
      return RVDocumentFormat::kOpenStepPropertyList;
  }
}

}  // namespace

std::unique_ptr<RVObject> RVPropertyList::Read(const std::string& bytes, RVFormatError* error) {
  if (error != nullptr) error->Clear();
  RVFormatFault fault;
  RVPropertyListKind kind = kRVPropertyListOpenStep;
  std::unique_ptr<RVObject> root;
  @autoreleasepool {
    id list = RVPropertyListFromBytes(bytes.data(), bytes.size(), &fault, &kind);
    if (list != nil) root.reset(RVObject::Create(list));
  }
  if (error != nullptr) {
    error->format = FormatOf(kind);
    if (root == nullptr) {
      if (fault.message.empty()) fault.message = "not a property list";
      Fill(error, fault, FormatOf(kind));
    }
  }
  return root;
}

std::string RVPropertyList::Write(const RVObject& root, RVDocumentFormat format,
                                  RVFormatError* error) {
  if (error != nullptr) error->Clear();
  RVFormatFault fault;
  std::string bytes;
  bool written = false;
  @autoreleasepool {
    if (format == RVDocumentFormat::kXMLPropertyList) {
      written = RVXMLPropertyListWrite(root.Ref(), &bytes, &fault);
    } else if (format == RVDocumentFormat::kBinaryPropertyList) {
      NSData* data = RVBinaryPropertyListData(root.Ref(), &fault);
      written = data != nil;
      if (written) bytes.assign(static_cast<const char*>([data bytes]), [data length]);
    } else {
      fault.message = "a format the property-list writers do not write";
    }
  }
  if (written) return bytes;
  if (error != nullptr) {
    if (fault.message.empty()) fault.message = "a value that has no exact form in the format";
    Fill(error, fault, format);
  }
  return std::string();
}

RVPropertyList::Kind RVPropertyList::KindOf(const RVObject& value) {
  id object = value.Ref();
  if (object == nil || object == [NSNull null]) return Kind::kNull;
  if ([object isKindOfClass:[NSString class]]) return Kind::kString;
  if ([object isKindOfClass:[NSDictionary class]]) return Kind::kDictionary;
  if ([object isKindOfClass:[NSArray class]]) return Kind::kArray;
  if ([object isKindOfClass:[NSData class]]) return Kind::kData;
  if ([object isKindOfClass:[NSDate class]]) return Kind::kDate;
  if (object == BoolToRVId(true) || object == BoolToRVId(false) ||
      object == [NSNumber numberWithBool:YES] || object == [NSNumber numberWithBool:NO])
    return Kind::kBoolean;
  if ([object isKindOfClass:[NSNumber class]]) {
    const char* type = [object objCType];
    if (type == nullptr || type[0] == '\0' || type[1] != '\0') return Kind::kOther;
    switch (type[0]) {
      case 'f':
      case 'd':
        return Kind::kReal;
      case 'Q':
      case 'L':
        return [object unsignedLongLongValue] > static_cast<unsigned long long>(INT64_MAX)
                   ? Kind::kUnsignedInteger
                   : Kind::kInteger;
      default:
        return Kind::kInteger;
    }
  }
  return Kind::kOther;
}
