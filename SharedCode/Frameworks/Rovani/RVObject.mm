#import <Foundation/Foundation.h>

#include <Rovani/RVBool.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>
#include <Rovani/RVUtilities.h>

#include "Platform/Runtime/RVClassType.h"
#include "Platform/CoreFoundation/RVCoreFoundation.h"
#include "Platform/Runtime/RVHandleTable.h"

static char sNullStringBuffer[1] = {0};
char* kNullStringBuffer = sNullStringBuffer;

RVObject::RVObject() : ref_(nil) {}

RVObject::RVObject(RVId obj) : ref_(obj) { [ref_ retain]; }

RVObject::RVObject(const RVObject& other) : ref_(other.ref_) {
  // The copy goes ahead when the two class types match, when the other side
  // is a plain RVObject, or when this side is; otherwise it is refused with
  // the log line "RVObject copy constructor did not copy <mine> cant copy
  // <theirs>". While this constructor runs, this object is a plain RVObject,
  // so the last test always holds: no class type needs looking up and no
  // copy is ever refused. Taking the object is the assignment's work on an
  // empty handle: retain it.
  [ref_ retain];
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
  // A query made while another is being answered gets the empty string. The
  // flag is cleared on every way out, a raised exception included.
  static bool inObjectsClassType = false;
  if (inObjectsClassType) return RVString();
  struct Guard {
    Guard() { inObjectsClassType = true; }
    ~Guard() { inObjectsClassType = false; }
  } guard;
  return RVString(RVClassTypeText(typeid(*this)));
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

RVId BoolToRVId(bool value) { return [BoolNumber boolNumberWithBool:value]; }

void SafeCFRelease(const void* ref) {
  if (ref != nullptr) CFRelease(ref);
}

// ---------------------------------------------------------------------------
// Object factory: the first row of the handle table that fits makes the
// handle; anything else is held as it is, and nil and NSNull give an empty
// handle.

RVObject* RVObject::Create(RVId obj) {
  const RVHandleKind* kind = RVHandleKindFor(obj);
  if (kind != nullptr && kind->make != nullptr) return kind->make(obj);
  if (obj == nil || [obj isKindOfClass:[NSNull class]]) return new RVObject();
  return new RVObject(obj);
}
