#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVJsonTranslator.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVUtilities.h>

#include "Platform/Runtime/RVHandleTable.h"
#include "Platform/Json/RVJsonValue.h"
#include "Platform/Runtime/RVOwned.h"
#include "Platform/Runtime/RVScalars.h"
#include "Platform/Text/RVUTF8.h"

namespace {

// ---------------------------------------------------------------------------
// Handles to JSON

// Class types are interned strings: comparing against these is cheap.
template <typename Handle>
const RVString& TypeOf() {
  static const RVString type = Handle::ClassType();
  return type;
}

// A string's UTF-8 text up to its first NUL, as its DataContainingUTF8CString
// read as a C string gives it (lossy, so never failing).
std::string LossyUtf8CText(NSString* string) {
  if ([string length] == 0) return std::string();
  NSData* bytes = [string dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  const char* text = static_cast<const char*>([bytes bytes]);
  if (text == nullptr) return std::string();
  return std::string(text, strnlen(text, [bytes length]));
}

// What a node of the tree is written as.
enum NodeKind : unsigned char { kNodeNull, kNodeArray, kNodeDictionary, kNodeNumber, kNodeString, kNodeBool };

// Walks a Foundation tree into a jsoncpp value. Every node is written as the
// handle the factory would make for it: an object's kind is that handle's
// class, decided once per Foundation class and kept. Text is converted into
// buffers that live as long as the walk.
class TreeWriter {
 public:
  TreeWriter() : cache_() {}

  // The root is written by its handle's own class, whatever it holds.
  void WriteRoot(void* slot, const RVObject& node) {
    NodeKind kind = node.IsTypeOfClass(TypeOf<RVArray>())        ? kNodeArray
                    : node.IsTypeOfClass(TypeOf<RVDictionary>()) ? kNodeDictionary
                    : node.IsTypeOfClass(TypeOf<RVNumber>())     ? kNodeNumber
                    : node.IsTypeOfClass(TypeOf<RVString>())     ? kNodeString
                    : node.IsTypeOfClass(TypeOf<RVBool>())       ? kNodeBool
                                                                 : kNodeNull;
    Write(slot, node.Ref(), kind);
  }

 private:
  void Write(void* slot, id object, NodeKind kind) {
    if (slot == nullptr) return;
    switch (kind) {
      case kNodeArray:
        WriteArray(slot, object);
        break;
      case kNodeDictionary:
        WriteDictionary(slot, object);
        break;
      case kNodeNumber:
        WriteNumber(slot, object);
        break;
      case kNodeString:
        RVJsonSetString(slot, Utf8CText(object));
        break;
      case kNodeBool:
        RVJsonSetBool(slot, [object boolValue] ? true : false);
        break;
      default:
        RVJsonSetNull(slot);
        break;
    }
  }

  void WriteArray(void* slot, NSArray* array) {
    RVJsonSetArray(slot);
    int count = static_cast<int>([array count]);
    for (int i = 0; i < count; ++i) {
      id element = [array objectAtIndex:i];
      Write(RVJsonAppendSlot(slot), element, KindOf(element));
    }
  }

  // The walk ends at the first empty key: an empty string used as a key hides
  // itself and every key the enumerator would give after it.
  void WriteDictionary(void* slot, NSDictionary* dictionary) {
    RVJsonSetObject(slot);
    if ([dictionary count] == 0) return;
    NSEnumerator* keys = [dictionary keyEnumerator];
    for (id key = [keys nextObject]; [key length] != 0; key = [keys nextObject]) {
      id value = [dictionary objectForKey:key];
      if (value == nil) break;
      // Keys are cut at their first NUL: a later key with the same text
      // replaces the member.
      Write(RVJsonMemberSlot(slot, Utf8CText(key)), value, KindOf(value));
    }
  }

  // Numbers made from float or double are reals; every other number goes
  // through the 32-bit int conversion, whatever it holds.
  static void WriteNumber(void* slot, NSNumber* number) {
    const char* type = [number objCType];
    bool isFloat = type != nullptr && (type[0] == 'd' || type[0] == 'f') && type[1] == '\0';
    if (isFloat)
      RVJsonSetReal(slot, RVDoubleValue(number));
    else
      RVJsonSetInt(slot, [number intValue]);
  }

  // The string's UTF-8 text up to its first NUL, in a buffer reused by the
  // next call. Text the converter cannot take whole (a lone surrogate) goes
  // the lossy platform route, which drops what it cannot convert.
  const char* Utf8CText(NSString* string) {
    NSUInteger length = [string length];
    text_.clear();
    if (length == 0) return text_.c_str();
    if (characters_.size() < length) characters_.resize(length);
    [string getCharacters:characters_.data() range:NSMakeRange(0, length)];
    for (NSUInteger i = 0; i < length; ++i) {
      unsigned int c = characters_[i];
      if (c == 0) break;
      if (c < 0xD800 || c > 0xDFFF) {
        RVAppendUTF8(&text_, c);
      } else if (c < 0xDC00 && i + 1 < length && characters_[i + 1] >= 0xDC00 &&
                 characters_[i + 1] <= 0xDFFF) {
        RVAppendUTF8(&text_, 0x10000 + ((c - 0xD800) << 10) + (characters_[++i] - 0xDC00));
      } else {
        text_ = LossyUtf8CText(string);
        break;
      }
    }
    return text_.c_str();
  }

  // The factory's handle class for object, kept per Foundation class.
  // Proxies answer class tests for their target, which may change: they
  // are asked each time.
  NodeKind KindOf(id object) {
    if (object == nil) return kNodeNull;
    Class type = object_getClass(object);
    Entry& entry = cache_[(reinterpret_cast<uintptr_t>(type) >> 4) % kCacheSize];
    if (entry.type == type) return entry.kind;
    NodeKind kind = HandleKindOf(object);
    if (!IsProxyClass(type)) entry = {type, kind};
    return kind;
  }

  static NodeKind HandleKindOf(id object) {
    const std::type_info& handle = RVHandleTypeFor(object);
    if (handle == typeid(RVArray)) return kNodeArray;
    if (handle == typeid(RVDictionary)) return kNodeDictionary;
    if (handle == typeid(RVNumber)) return kNodeNumber;
    if (handle == typeid(RVString)) return kNodeString;
    if (handle == typeid(RVBool)) return kNodeBool;
    return kNodeNull;
  }

  static bool IsProxyClass(Class type) {
    static Class proxy = [NSProxy class];
    for (Class c = type; c != Nil; c = class_getSuperclass(c))
      if (c == proxy) return true;
    return false;
  }

  struct Entry {
    Class type;
    NodeKind kind;
  };
  static constexpr size_t kCacheSize = 64;
  Entry cache_[kCacheSize];
  std::vector<unichar> characters_;
  std::string text_;
};

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
  TreeBuilder()
      : numberClass_([NSNumber class]),
        stringClass_([NSString class]),
        arrayClass_([NSArray class]),
        dictionaryClass_([NSDictionary class]),
        true_(BoolToRVId(true)),
        false_(BoolToRVId(false)) {}

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
        return [[numberClass_ alloc] initWithInt:static_cast<int>(description.integer)];
      case kRVJsonInt64:
        return [[numberClass_ alloc] initWithLong:static_cast<long>(description.integer)];
      case kRVJsonUInt:
        return [[numberClass_ alloc]
            initWithUnsignedInt:static_cast<unsigned int>(description.unsignedInteger)];
      case kRVJsonUInt64:
        return [[numberClass_ alloc]
            initWithUnsignedLong:static_cast<unsigned long>(description.unsignedInteger)];
      case kRVJsonReal:
        return [[numberClass_ alloc] initWithDouble:description.real];
      case kRVJsonString:
        return [[stringClass_ alloc] initWithCString:description.text
                                            encoding:NSUTF8StringEncoding];
      case kRVJsonBool:
        return [(description.boolean ? true_ : false_) retain];
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
  // Per depth, the children and the objects made for them of the collection
  // being built there; kept to save allocations (a deque keeps references
  // valid as it grows). A raise leaves the members made so far to the
  // builder, which releases them as the raise unwinds it.
  struct Level {
    std::vector<RVJsonChild> children;
    std::vector<id> keys;  // not retained: the builder's own keys hold them
    std::vector<RVOwned<>> members;
    std::vector<id> objects;  // the members, as the initialisers take them
  };
  Level& LevelAt(size_t depth) {
    while (levels_.size() <= depth) levels_.emplace_back();
    return levels_[depth];
  }

  static id* Objects(Level& level) {
    level.objects.clear();
    for (const RVOwned<>& member : level.members) level.objects.push_back(member.Get());
    return level.objects.data();
  }

  // The array is made once from its elements.
  id BuildArray(const void* value, size_t depth) {
    Level& level = LevelAt(depth);
    RVJsonChildren(value, &level.children);
    if (level.children.empty()) return nil;
    std::vector<RVOwned<>>& elements = level.members;
    elements.clear();
    for (const RVJsonChild& child : level.children) {
      RVJsonKind kind;
      RVOwned<> element = RVAdopt(Build(child.value, kind, depth + 1));
      // An element that makes nothing (nil) is refused by the platform's
      // array, which raises, as it does for AddObject of an empty handle.
      if (!element) [[NSMutableArray array] addObject:element.Get()];
      elements.push_back(std::move(element));
    }
    id result = [[arrayClass_ alloc] initWithObjects:Objects(level) count:elements.size()];
    elements.clear();
    return result;
  }

  // The dictionary is made once from its keys and members. Equal keys (names
  // equal up to a NUL) keep the later member, as setting them one by one
  // does.
  id BuildDictionary(const void* value, size_t depth) {
    Level& level = LevelAt(depth);
    RVJsonChildren(value, &level.children);
    if (level.children.empty()) return nil;
    std::vector<id>& keys = level.keys;
    std::vector<RVOwned<>>& members = level.members;
    keys.clear();
    members.clear();
    for (const RVJsonChild& child : level.children) {
      NSString* key = Key(child.name);
      if (key != nil) keys.push_back(key);
      RVJsonKind kind;
      RVOwned<> member = RVAdopt(Build(child.value, kind, depth + 1));
      members.push_back(StoredMember(std::move(member), kind));
      if (key == nil) {
        // A name that is not UTF-8 makes no key, which the platform's
        // mutable dictionary refuses by raising, as it would for the
        // member-by-member route.
        NSMutableDictionary* refusing = [[[NSMutableDictionary alloc] init] autorelease];
        [refusing setObject:members.back().Get() forKey:key];
      }
    }
    id result = [[dictionaryClass_ alloc] initWithObjects:Objects(level)
                                                  forKeys:keys.data()
                                                    count:keys.size()];
    keys.clear();
    members.clear();
    return result;
  }

  // One string per distinct name within a parse: documents repeat their
  // names in every object of a kind. Nil for a name that is not UTF-8.
  NSString* Key(const char* name) {
    std::string_view text(name);
    auto found = keys_.find(text);
    if (found != keys_.end()) return found->second.Get();
    RVOwned<NSString*> key =
        RVAdopt([[stringClass_ alloc] initWithCString:name encoding:NSUTF8StringEncoding]);
    NSString* made = key.Get();
    if (made != nil) keys_.emplace(text, std::move(key));
    return made;
  }

  // What the dictionary stores for member: the member itself, or for an
  // empty one what the dictionary stores for an empty handle: an empty
  // string, array or dictionary for those kinds, NSNull for the rest.
  static RVOwned<> StoredMember(RVOwned<> member, RVJsonKind kind) {
    bool empty = !member || (kind == kRVJsonString && [member.Get() length] == 0);
    if (!empty) return member;
    switch (kind) {
      case kRVJsonString:
        return RVOwned<>::Retain([NSString string]);
      case kRVJsonArray:
        return RVOwned<>::Retain([NSArray array]);
      case kRVJsonObject:
        return RVOwned<>::Retain([NSDictionary dictionary]);
      default:
        return RVOwned<>::Retain([NSNull null]);
    }
  }

  Class numberClass_;
  Class stringClass_;
  Class arrayClass_;
  Class dictionaryClass_;
  id true_;
  id false_;
  std::deque<Level> levels_;
  // Names point into the value tree, which outlives the builder.
  std::unordered_map<std::string_view, RVOwned<NSString*>> keys_;
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
    TreeWriter().WriteRoot(value, node);
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
  RVOwned<> built = RVAdopt(builder.Build(value, kind, 0));
  RVObject* handle = NewHandle(built.Get(), kind);
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
