// RVObject: the polymorphic base of every handle. It owns exactly one
// reference to one Objective-C object (or holds nil).
#ifndef ROVANI_RVOBJECT_H
#define ROVANI_RVOBJECT_H

#include <Rovani/RVDefines.h>

class RV_EXPORT RVObject {
 public:
  RVObject();
  // Stores obj and retains it; nil stays nil.
  RVObject(RVId obj);
  // The checked copy: compares class types, logs a refusal, never throws.
  RVObject(const RVObject& other);

  // Virtual slots, in this order: destructor (complete and deleting),
  // IsEmpty, Empty, Description, Retain, Release.
  virtual ~RVObject();
  virtual bool IsEmpty() const;
  virtual void Empty();
  virtual RVString Description() const;
  virtual void Retain();
  virtual void Release();

  // Releases the old object (virtual Release), then stores and retains obj
  // (virtual Retain). Assigning the held pointer again does nothing.
  RVObject& operator=(RVId obj);
  // No class-type test: handles of different classes may be assigned.
  RVObject& operator=(const RVObject& other);

  RVId Ref() const { return ref_; }
  // The held slot itself, so that a creator can write into it in place.
  RVId* InternalRef() const { return const_cast<RVId*>(&ref_); }
  unsigned int RetainCount() const;

  // isEqual: of the held object; an empty handle is never equal, not even
  // to nil.
  bool operator==(RVId other) const;
  bool operator!=(RVId other) const;
  bool operator==(const RVObject& other) const;
  bool operator!=(const RVObject& other) const;

  // Class types: the ABI name of the dynamic type less its first character
  // ("RVString", but "2RVDictionary" for a ten-letter class name).
  static RVString ClassType();
  RVString ObjectsClassType() const;
  bool IsTypeOfClass(const RVString& name) const;
  bool IsSameClassTypeAs(const RVObject& other) const;

  // A new heap handle of the class that fits obj (the caller deletes it);
  // nil and NSNull give an empty plain RVObject.
  static RVObject* Create(RVId obj);

 protected:
  // Holds a constant object (a string literal) without sending it a message,
  // so that it can be made while the library loads, before the runtime can
  // answer messages. Constants ignore retain and release.
  struct ConstantObject {};
  RVObject(RVId constant, ConstantObject) : ref_(constant) {}

 private:
  RVId ref_;
};

// The shared boolean instance for value (not retained).
RV_EXPORT RVId BoolToRVId(bool value);
// Releases a Core Foundation reference; does nothing for null.
RV_EXPORT void SafeCFRelease(const void* ref);

// A writable pointer to a static empty C string.
RV_EXPORT extern char* kNullStringBuffer;

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVString.h>

#endif
