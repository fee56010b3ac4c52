#import <Foundation/Foundation.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>

#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVError.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>
#include <Rovani/RVValue.h>
#include <Rovani/RVUtilities.h>

#include "Platform/RVCoreFoundation.h"
#include "Platform/RVPlatform.h"

static char sNullStringBuffer[1] = {0};
char* kNullStringBuffer = sNullStringBuffer;

// ---------------------------------------------------------------------------
// Class-type cache.
//
// Class types are asked for on every checked copy and every typed look-up,
// and the answer for a dynamic type never changes, so each is computed once.
// The fast path is a small lock-free table keyed by the address of the type's
// name; a miss computes the text under a lock and interns it by content, so
// that two types with the same class type share one string object and equal
// class types compare equal by address.
namespace {

constexpr size_t kClassTypeSlots = 128;

struct ClassTypeSlot {
  std::atomic<const char*> key{nullptr};
  NSString* text = nil;
};

ClassTypeSlot gClassTypeSlots[kClassTypeSlots];
std::mutex gClassTypeMutex;

std::unordered_map<std::string, NSString*>& InternedClassTypes() {
  // Deliberately never destroyed: the strings live as long as the process.
  static auto* interned = new std::unordered_map<std::string, NSString*>();
  return *interned;
}

std::string ClassTypeFromTypeName(const char* name) {
  // Exactly one leading character is dropped, whatever the length prefix:
  // "12RVDictionary" becomes "2RVDictionary".
  std::string result = name[0] ? name + 1 : "";
  // Names of the form "class X" keep only their last word.
  size_t blank = result.rfind(' ');
  if (blank != std::string::npos) result = result.substr(blank + 1);
  return result;
}

NSString* InternClassType(const char* typeName) {
  std::string text = ClassTypeFromTypeName(typeName);
  auto& interned = InternedClassTypes();
  auto found = interned.find(text);
  if (found != interned.end()) return found->second;
  NSString* made = [[NSString alloc] initWithUTF8String:text.c_str()];
  interned.emplace(text, made);
  return made;
}

size_t SlotFor(const char* key) {
  return (reinterpret_cast<uintptr_t>(key) >> 3) % kClassTypeSlots;
}

}  // namespace

NSString* RVClassTypeText(const std::type_info& type) {
  const char* key = type.name();
  size_t start = SlotFor(key);
  for (size_t i = 0; i < kClassTypeSlots; ++i) {
    ClassTypeSlot& slot = gClassTypeSlots[(start + i) % kClassTypeSlots];
    const char* seen = slot.key.load(std::memory_order_acquire);
    if (seen == key) return slot.text;
    if (seen == nullptr) break;
  }

  std::lock_guard<std::mutex> lock(gClassTypeMutex);
  NSString* text = InternClassType(key);
  for (size_t i = 0; i < kClassTypeSlots; ++i) {
    ClassTypeSlot& slot = gClassTypeSlots[(start + i) % kClassTypeSlots];
    const char* seen = slot.key.load(std::memory_order_relaxed);
    if (seen == key) break;
    if (seen == nullptr) {
      slot.text = text;
      slot.key.store(key, std::memory_order_release);
      break;
    }
  }
  // A full table only costs the look-up under the lock next time.
  return text;
}

// ---------------------------------------------------------------------------

RVObject::RVObject() : ref_(nil) {}

RVObject::RVObject(RVId obj) : ref_(obj) { [ref_ retain]; }

RVObject::RVObject(const RVObject& other) : ref_(nil) {
  // While it is being built, this object is of class RVObject, so the third
  // test always holds and the copy proceeds; the tests and their order are
  // kept because every derived copy goes through here.
  static NSString* const base = RVClassTypeText(typeid(RVObject));
  NSString* mine = base;  // typeid(*this) inside this constructor
  NSString* theirs = RVClassTypeText(typeid(other));
  if (mine == theirs || base == theirs || base == mine) {
    operator=(other.Ref());
    return;
  }
  DebugLog(RVString("RVObject copy constructor did not copy ") + RVString(mine) +
           " cant copy " + RVString(theirs));
}

RVObject::~RVObject() {
  [ref_ release];
  ref_ = nil;
}

bool RVObject::IsEmpty() const { return ref_ == nil; }

void RVObject::Empty() { Release(); }

RVString RVObject::Description() const {
  RVString result;
  result = static_cast<RVId>([ref_ description]);
  return result;
}

void RVObject::Retain() { [ref_ retain]; }

void RVObject::Release() {
  if (ref_ != nil) [ref_ release];
  ref_ = nil;
}

RVObject& RVObject::operator=(RVId obj) {
  if (obj == ref_) return *this;
  Release();
  ref_ = obj;
  Retain();
  return *this;
}

RVObject& RVObject::operator=(const RVObject& other) { return operator=(other.Ref()); }

unsigned int RVObject::RetainCount() const {
  return static_cast<unsigned int>([ref_ retainCount]);
}

bool RVObject::operator==(RVId other) const { return [ref_ isEqual:other] ? true : false; }

bool RVObject::operator!=(RVId other) const { return !operator==(other); }

bool RVObject::operator==(const RVObject& other) const { return operator==(other.Ref()); }

bool RVObject::operator!=(const RVObject& other) const { return !operator==(other.Ref()); }

RVString RVObject::ClassType() { return RVString(RVClassTypeText(typeid(RVObject))); }

RVString RVObject::ObjectsClassType() const {
  // A query made while another is being answered gets the empty string.
  static bool inObjectsClassType = false;
  if (inObjectsClassType) return RVString();
  inObjectsClassType = true;
  RVString result(RVClassTypeText(typeid(*this)));
  inObjectsClassType = false;
  return result;
}

bool RVObject::IsTypeOfClass(const RVString& name) const {
  NSString* mine = RVClassTypeText(typeid(*this));
  RVId theirs = name.Ref();
  return theirs == mine || [mine isEqualToString:theirs];
}

bool RVObject::IsSameClassTypeAs(const RVObject& other) const {
  NSString* mine = RVClassTypeText(typeid(*this));
  NSString* theirs = RVClassTypeText(typeid(other));
  return mine == theirs;
}

void SafeCFRelease(const void* ref) {
  if (ref != nullptr) CFRelease(ref);
}

// ---------------------------------------------------------------------------
// Object factory.
//
// The order of the tests is binding: mutable classes match their immutable
// parents, the library's booleans come before numbers, and numbers before
// their parent class NSValue. nil fails every test.

const std::type_info& RVHandleTypeFor(id obj) {
  if ([obj isKindOfClass:[NSString class]]) return typeid(RVString);
  if ([obj isKindOfClass:[NSDictionary class]]) return typeid(RVDictionary);
  if ([obj isKindOfClass:[NSData class]]) return typeid(RVData);
  if ([obj isKindOfClass:[NSArray class]]) return typeid(RVArray);
  // NSDate: its handle class is not part of the library yet.
  if ([obj isKindOfClass:[BoolNumber class]]) return typeid(RVBool);
  if ([obj isKindOfClass:[NSNumber class]]) return typeid(RVNumber);
  if ([obj isKindOfClass:[NSValue class]]) return typeid(RVValue);
  // NSURL: its handle class is not part of the library yet.
  if ([obj isKindOfClass:[NSError class]]) return typeid(RVError);
  if ([obj isKindOfClass:[NSEnumerator class]]) return typeid(RVEnumerator);
  // NSBundle: its handle class is not part of the library yet.
  return typeid(RVObject);
}

RVObject* RVObject::Create(RVId obj) {
  const std::type_info& type = RVHandleTypeFor(obj);
  if (type == typeid(RVString)) return new RVString(static_cast<NSString*>(obj));
  if (type == typeid(RVDictionary)) return new RVDictionary(static_cast<NSDictionary*>(obj));
  if (type == typeid(RVData)) return new RVData(static_cast<NSData*>(obj));
  if (type == typeid(RVArray)) return new RVArray(static_cast<NSArray*>(obj));
  if (type == typeid(RVBool)) return new RVBool(obj);
  if (type == typeid(RVNumber)) return new RVNumber(static_cast<NSNumber*>(obj));
  if (type == typeid(RVValue)) return new RVValue(static_cast<NSValue*>(obj));
  if (type == typeid(RVError)) return new RVError(static_cast<NSError*>(obj));
  if (type == typeid(RVEnumerator)) return new RVEnumerator(static_cast<NSEnumerator*>(obj));
  // Anything else is held as it is; nil and NSNull give an empty handle.
  if (obj == nil || [obj isKindOfClass:[NSNull class]]) return new RVObject();
  return new RVObject(obj);
}
