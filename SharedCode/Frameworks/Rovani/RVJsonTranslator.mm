#import <Foundation/Foundation.h>

#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVJsonTranslator.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVUtilities.h>

#include "Platform/RVJsonValue.h"
#include "Platform/RVScalars.h"

namespace {

// ---------------------------------------------------------------------------
// Handles to JSON

// Class types are interned strings: comparing against these is cheap.
const RVString& ArrayType() {
  static const RVString type = RVArray::ClassType();
  return type;
}
const RVString& DictionaryType() {
  static const RVString type = RVDictionary::ClassType();
  return type;
}
const RVString& NumberType() {
  static const RVString type = RVNumber::ClassType();
  return type;
}
const RVString& StringType() {
  static const RVString type = RVString::ClassType();
  return type;
}
const RVString& BoolType() {
  static const RVString type = RVBool::ClassType();
  return type;
}

// A string's UTF-8 text up to its first NUL, as its DataContainingUTF8CString
// read as a C string gives it (lossy, so never failing).
std::string Utf8CText(const RVString& string) {
  if (string.IsEmpty()) return std::string();
  NSData* bytes = [string.Ref() dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  const char* text = static_cast<const char*>([bytes bytes]);
  if (text == nullptr) return std::string();
  return std::string(text, strnlen(text, [bytes length]));
}

void EncodeInto(void* slot, const RVObject& node);

void EncodeArray(void* slot, NSArray* array) {
  RVJsonSetArray(slot);
  int count = static_cast<int>([array count]);
  for (int i = 0; i < count; ++i) {
    RVObject* element = RVObject::Create([array objectAtIndex:i]);
    if (element == nullptr) break;
    EncodeInto(RVJsonAppendSlot(slot), *element);
    delete element;
  }
}

// The walk ends at the first empty key: an empty string used as a key hides
// itself and every key the enumerator would give after it.
void EncodeDictionary(void* slot, const RVDictionary& dictionary) {
  RVJsonSetObject(slot);
  if (dictionary.Count() == 0) return;
  RVEnumerator keys = dictionary.KeyEnumerator();
  for (RVString key = keys.NextStringObject(); !key.IsEmpty(); key = keys.NextStringObject()) {
    RVObject* value = dictionary.ValueForKey(key);
    if (value == nullptr) break;
    // Keys are cut at their first NUL: a later key with the same text
    // replaces the member.
    EncodeInto(RVJsonMemberSlot(slot, Utf8CText(key).c_str()), *value);
    delete value;
  }
}

// Numbers made from float or double are reals; every other number goes
// through the 32-bit int conversion, whatever it holds.
void EncodeNumber(void* slot, NSNumber* number) {
  const char* type = [number objCType];
  bool isFloat = type != nullptr && (strcmp(type, "d") == 0 || strcmp(type, "f") == 0);
  if (isFloat)
    RVJsonSetReal(slot, RVDoubleValue(number));
  else
    RVJsonSetInt(slot, [number intValue]);
}

void EncodeInto(void* slot, const RVObject& node) {
  if (slot == nullptr) return;
  if (node.IsTypeOfClass(ArrayType())) {
    EncodeArray(slot, node.Ref());
  } else if (node.IsTypeOfClass(DictionaryType())) {
    EncodeDictionary(slot, RVDictionary(static_cast<NSDictionary*>(node.Ref())));
  } else if (node.IsTypeOfClass(NumberType())) {
    EncodeNumber(slot, node.Ref());
  } else if (node.IsTypeOfClass(StringType())) {
    RVJsonSetString(slot, Utf8CText(RVString(static_cast<NSString*>(node.Ref()))).c_str());
  } else if (node.IsTypeOfClass(BoolType())) {
    RVJsonSetBool(slot, [node.Ref() boolValue] ? true : false);
  } else {
    RVJsonSetNull(slot);
  }
}

// ---------------------------------------------------------------------------
// JSON to Foundation objects
//
// The collections' own change members copy the whole collection on every
// change, which makes building an n-member collection cost n squared. The
// collections built here are seen by nobody until they are finished, so each
// is filled privately and made immutable once: the result is what adding the
// members one by one through RVArray::AddObject and
// RVDictionary::SetObjectForKey gives (the same classes, placeholders and
// raises), at linear cost.

class TreeBuilder {
 public:
  // The object for value (+1), or nil where the handle made for it would hold
  // nothing: null, an empty array or object, a type not handled, text that
  // is not UTF-8.
  id Build(const void* value, RVJsonKind& kind, size_t depth) {
    RVJsonDescription description = RVJsonDescribe(value);
    kind = description.kind;
    switch (description.kind) {
      case kRVJsonNull:
        return nil;
      case kRVJsonInt:
        return [[NSNumber alloc] initWithInt:static_cast<int>(description.integer)];
      case kRVJsonInt64:
        return [[NSNumber alloc] initWithLong:static_cast<long>(description.integer)];
      case kRVJsonUInt:
        return [[NSNumber alloc]
            initWithUnsignedInt:static_cast<unsigned int>(description.unsignedInteger)];
      case kRVJsonUInt64:
        return [[NSNumber alloc]
            initWithUnsignedLong:static_cast<unsigned long>(description.unsignedInteger)];
      case kRVJsonReal:
        return [[NSNumber alloc] initWithDouble:description.real];
      case kRVJsonString:
        return [[NSString alloc] initWithCString:description.text encoding:NSUTF8StringEncoding];
      case kRVJsonBool:
        return [BoolToRVId(description.boolean) retain];
      case kRVJsonArray:
        return BuildArray(value, depth);
      case kRVJsonObject:
        return BuildDictionary(value, depth);
      default:
        RVLog("RVJsonTranslator::ParseNext: type not handled");
        return nil;
    }
  }

 private:
  // Children of the collection being built at each depth; kept to save
  // allocations (a deque keeps references valid as it grows).
  std::vector<RVJsonChild>& ChildrenAt(size_t depth) {
    while (children_.size() <= depth) children_.emplace_back();
    return children_[depth];
  }

  id BuildArray(const void* value, size_t depth) {
    std::vector<RVJsonChild>& children = ChildrenAt(depth);
    RVJsonChildren(value, &children);
    if (children.empty()) return nil;
    NSMutableArray* working = [[NSMutableArray alloc] initWithCapacity:children.size()];
    @try {
      for (const RVJsonChild& child : children) {
        RVJsonKind kind;
        id element = Build(child.value, kind, depth + 1);
        // An element that makes nothing (nil) is refused by the platform's
        // array, which raises, as it does for AddObject of an empty handle.
        [working addObject:element];
        [element release];
      }
    } @catch (NSException* exception) {
      [working release];
      @throw;
    }
    id result = [working copy];
    [working release];
    return result;
  }

  // Members are gathered in private buffers and the immutable dictionary is
  // made from them once. Equal keys (names equal up to a NUL) keep the later
  // member, as setting them one by one does; copying a filled mutable
  // dictionary would hash every key a second time, which costs as much as
  // the rest of the parse.
  id BuildDictionary(const void* value, size_t depth) {
    std::vector<RVJsonChild>& children = ChildrenAt(depth);
    RVJsonChildren(value, &children);
    if (children.empty()) return nil;
    std::vector<id>& keys = KeysAt(depth);
    std::vector<id>& members = MembersAt(depth);
    keys.clear();
    members.clear();
    @try {
      for (const RVJsonChild& child : children) {
        NSString* key = [[NSString alloc] initWithCString:child.name
                                                 encoding:NSUTF8StringEncoding];
        if (key != nil) keys.push_back(key);
        RVJsonKind kind;
        id member = Build(child.value, kind, depth + 1);
        id stored = [StoredMember(member, kind) retain];
        [member release];
        members.push_back(stored);
        if (key == nil) {
          // A name that is not UTF-8 makes no key, which the platform's
          // mutable dictionary refuses by raising, as it would for the
          // member-by-member route.
          NSMutableDictionary* refusing = [[[NSMutableDictionary alloc] init] autorelease];
          [refusing setObject:stored forKey:key];
        }
      }
    } @catch (NSException* exception) {
      for (id key : keys) [key release];
      for (id member : members) [member release];
      keys.clear();
      members.clear();
      @throw;
    }
    id result = [[NSDictionary alloc] initWithObjects:members.data()
                                              forKeys:keys.data()
                                                count:keys.size()];
    for (id key : keys) [key release];
    for (id member : members) [member release];
    keys.clear();
    members.clear();
    return result;
  }

  // Empty members are stored as the dictionary stores empty handles: an
  // empty string, array or dictionary for those kinds, NSNull for the rest.
  static id StoredMember(id member, RVJsonKind kind) {
    switch (kind) {
      case kRVJsonString:
        return [member length] != 0 ? member : [NSString string];
      case kRVJsonArray:
        return member != nil ? member : [NSArray array];
      case kRVJsonObject:
        return member != nil ? member : [NSDictionary dictionary];
      default:
        return member != nil ? member : [NSNull null];
    }
  }

  std::vector<id>& KeysAt(size_t depth) {
    while (keys_.size() <= depth) keys_.emplace_back();
    return keys_[depth];
  }
  std::vector<id>& MembersAt(size_t depth) {
    while (members_.size() <= depth) members_.emplace_back();
    return members_[depth];
  }

  std::deque<std::vector<RVJsonChild>> children_;
  std::deque<std::vector<id>> keys_;
  std::deque<std::vector<id>> members_;
};

// The handle ParseNext makes for each kind of value.
RVObject* NewHandle(id object, RVJsonKind kind) {
  switch (kind) {
    case kRVJsonInt:
    case kRVJsonInt64:
    case kRVJsonUInt:
    case kRVJsonUInt64:
    case kRVJsonReal:
      return new RVNumber(static_cast<NSNumber*>(object));
    case kRVJsonString:
      return new RVString(static_cast<NSString*>(object));
    case kRVJsonBool:
      return new RVBool(static_cast<RVId>(object));
    case kRVJsonArray:
      return new RVArray(static_cast<NSArray*>(object));
    case kRVJsonObject:
      return new RVDictionary(static_cast<NSDictionary*>(object));
    default:
      return new RVObject();
  }
}

}  // namespace

RVJsonTranslator::RVJsonTranslator() {}

RVJsonTranslator::~RVJsonTranslator() {}

void* RVJsonTranslator::EncodeNext(const RVObject& node) const {
  void* value = RVJsonNew();
  if (value == nullptr) return nullptr;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  @try {
    EncodeInto(value, node);
  } @catch (NSException* exception) {
    // The pool goes with the caller's, which keeps the exception alive.
    RVJsonDelete(value);
    @throw;
  }
  [pool drain];
  return value;
}

RVString RVJsonTranslator::Encode(const RVObject& root) const {
  RVString result;
  void* value = EncodeNext(root);
  if (value != nullptr) {
    std::string text;
    if (RVJsonWriteStyled(value, &text)) result = text.c_str();
    RVJsonDelete(value);
  }
  return result;
}

RVError RVJsonTranslator::EncodeToFilePath(const RVObject& root, const RVString& path) {
  RVError result;
  RVData data(Encode(root));
  if (!data.WriteToFile(path)) {
    static const RVString domain =
        FilePathToDomain("SharedCode/Frameworks/Rovani/RVJsonTranslator");
    result = MakeRVError(2, "Failed to create file", "", domain);
  }
  return result;
}

RVObject* RVJsonTranslator::ParseNext(void* value) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  TreeBuilder builder;
  RVJsonKind kind;
  // A raise leaves the pool to the caller's, which keeps the exception alive.
  id built = builder.Build(value, kind, 0);
  RVObject* handle = NewHandle(built, kind);
  [built release];
  [pool drain];
  return handle;
}

RVObject* RVJsonTranslator::Parse(const RVString& text) {
  RVData document = text.DataContainingUTF8CString();
  const char* begin = document.CharPointer();
  if (begin == nullptr) begin = "";
  void* root = RVJsonParse(begin, begin + strlen(begin));
  if (root == nullptr) {
    RVLog("RVJsonTranslator::Parse: Failed to parse");
    return nullptr;
  }
  RVObject* result = nullptr;
  @try {
    result = ParseNext(root);
  } @catch (NSException* exception) {
    RVJsonDelete(root);
    @throw;
  }
  RVJsonDelete(root);
  return result;
}

RVObject* RVJsonTranslator::ParseFromFilePath(const RVString& path) {
  RVString text;
  if (!path.IsEmpty()) text = RVData::DataWithContentsOfFile(path);
  return Parse(text);
}
