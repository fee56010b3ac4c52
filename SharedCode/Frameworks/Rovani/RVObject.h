/// \file
/// RVObject, the base of every handle, with the free functions BoolToRVId
/// and SafeCFRelease.
#ifndef ROVANI_RVOBJECT_H
#define ROVANI_RVOBJECT_H

#include <Rovani/RVDefines.h>

/// The polymorphic base of every handle: owns exactly one reference to one
/// Objective-C object, or holds nil.
///
/// Every handle class derives from it publicly and (except RVDateFormatter)
/// adds no data member, so handles can be copied, assigned and sliced
/// through the base. Taking an object retains it, replacing it releases the
/// old one, destroying the handle releases it. A nil object is valid
/// everywhere: every question answers nil, false or 0.
///
/// Members that hand out a value of unknown class (RVDictionary::ValueForKey,
/// RVArray::ObjectAtIndex, RVEnumerator::NextObject, ...) answer a heap
/// RVObject made by Create(); the caller deletes it. Ask it what it is with
/// IsTypeOfClass().
///
/// Handles are not thread-safe: keep each on one thread.
class RV_EXPORT RVObject {
 public:
  /// An empty handle (nil).
  RVObject();
  /// Stores \p obj and retains it; nil stays nil.
  RVObject(RVId obj);
  /// The checked copy: compares class types, logs a refusal, never throws.
  /// \note In practice the copy always takes the other's object (retained):
  ///   while it is built, the new handle reports the base class type, which
  ///   passes the test. A refusal would be written with DebugLog and leave
  ///   the copy empty.
  /// \param other the handle whose object is shared.
  RVObject(const RVObject& other);

  // Virtual slots, in this order: destructor (complete and deleting),
  // IsEmpty, Empty, Description, Retain, Release.
  /// Releases the held object (directly, not through the virtual Release()).
  virtual ~RVObject();
  /// Whether nothing is held.
  /// \return true exactly when the held pointer is nil (some handle classes
  ///   also count an object without contents as empty).
  virtual bool IsEmpty() const;
  /// Releases the held object (through the virtual Release()), leaving the
  /// handle empty.
  virtual void Empty();
  /// The held object's description, as Foundation words it.
  /// \return the description; an empty (nil) string for an empty handle.
  virtual RVString Description() const;
  /// Sends one more retain to the held object; the handle is unchanged.
  virtual void Retain();
  /// Releases the held object and sets the handle to nil.
  virtual void Release();

  /// Releases the old object (virtual Release), then stores and retains obj
  /// (virtual Retain). Assigning the held pointer again does nothing.
  RVObject& operator=(RVId obj);
  /// No class-type test: handles of different classes may be assigned.
  /// \note Unlike the copy constructor this is deliberate and unchecked: an
  ///   RVString may end up holding a dictionary.
  /// \param other the handle whose object is shared.
  RVObject& operator=(const RVObject& other);

  /// The held object.
  /// \return the held pointer, neither retained nor autoreleased; nil when
  ///   empty.
  RVId Ref() const { return ref_; }
  /// The held slot itself, so that a creator can write into it in place.
  /// \warning Writing into the slot bypasses retain and release: whatever
  ///   is written is owned by the handle, whatever was there is not released.
  /// \return a pointer to the handle's own field.
  RVId* InternalRef() const { return const_cast<RVId*>(&ref_); }
  /// The held object's retain count.
  /// \return the count Foundation reports; 0 for an empty handle.
  unsigned int RetainCount() const;

  /// Equality of the held object (`isEqual:`); an empty handle is never
  /// equal, not even to nil.
  /// \return whether the held object equals \p other.
  bool operator==(RVId other) const;
  /// The negation of operator==(RVId): true for an empty handle.
  /// \return whether the held object differs from \p other.
  bool operator!=(RVId other) const;
  /// Equality of the held objects (`isEqual:`); an empty handle is never
  /// equal, not even to another empty handle.
  /// \return whether the held object equals the other's.
  bool operator==(const RVObject& other) const;
  /// The negation of operator==(const RVObject&).
  bool operator!=(const RVObject& other) const;

  /// The class type of this class, "RVObject". Every handle class has its
  /// own static ClassType() built alike.
  ///
  /// Class types are the ABI name of the dynamic type less its first
  /// character ("RVString", but "2RVDictionary" for a ten-letter class name).
  /// \warning By design exactly one character is dropped, so a class name of
  ///   ten letters or more keeps the second digit of its length:
  ///   "2RVDictionary", "2RVEnumerator", "4RVUserDefaults",
  ///   "5RVDateFormatter". Compare with ClassType(), not with a literal.
  /// \return "RVObject".
  static RVString ClassType();
  /// The class type of this handle's dynamic class (see ClassType()).
  /// \note Not safe to call from two threads at once: a call made while
  ///   another is running answers the empty string.
  /// \return the class type, such as "RVString" or "2RVDictionary".
  RVString ObjectsClassType() const;
  /// Whether this handle's class type is \p name.
  /// \param name a class type, best taken from a class's ClassType().
  /// \return whether ObjectsClassType() equals \p name.
  bool IsTypeOfClass(const RVString& name) const;
  /// Whether both handles are of the same handle class.
  bool IsSameClassTypeAs(const RVObject& other) const;

  /// A new heap handle of the class that fits obj (the caller deletes it);
  /// nil and NSNull give an empty plain RVObject.
  ///
  /// The object's class is tested in this order: string (RVString),
  /// dictionary (RVDictionary), data (RVData), array (RVArray), date
  /// (RVDate), the library's boolean (RVBool), number (RVNumber), value
  /// (RVValue), URL (RVURL), error (RVError), enumerator (RVEnumerator),
  /// bundle (RVBundle); any other object gives a plain RVObject holding it.
  /// Mutable classes match their immutable parents.
  /// \param obj any object, or nil.
  /// \return a new handle, never null; delete it through RVObject*.
  static RVObject* Create(RVId obj);

 protected:
  /// Marks the constructor that holds a constant object.
  struct ConstantObject {};
  /// Holds a constant object (a string literal) without sending it a message,
  /// so that it can be made while the library loads, before the runtime can
  /// answer messages. Constants ignore retain and release.
  RVObject(RVId constant, ConstantObject) : ref_(constant) {}

 private:
  RVId ref_;
};

/// The shared boolean instance for value (not retained).
/// \param value the truth wanted.
/// \return the library's shared `BoolNumber` for \p value, the object an
///   RVBool holds.
RV_EXPORT RVId BoolToRVId(bool value);
/// Releases a Core Foundation reference; does nothing for null.
/// \param ref the reference to release, or null.
RV_EXPORT void SafeCFRelease(const void* ref);

/// A writable pointer to a static empty C string. Nothing in the library
/// reads it.
RV_EXPORT extern char* kNullStringBuffer;

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVString.h>

#endif
