/// \file
/// RVEnumerator, a one-pass enumerator over a collection.
#ifndef ROVANI_RVENUMERATOR_H
#define ROVANI_RVENUMERATOR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVArray;

/// A handle on a one-pass NSEnumerator. Copies share the cursor: advancing
/// one copy advances all.
/// \note The class type is "2RVEnumerator" (see RVObject::ClassType()).
class RV_EXPORT RVEnumerator : public RVObject {
 public:
  /// An empty enumerator (nothing held).
  RVEnumerator();
  /// Shares the other's enumerator and its cursor.
  RVEnumerator(const RVEnumerator& other);
  /// Holds \p enumerator, retained.
  RVEnumerator(NSEnumerator* enumerator);
  /// Releases the enumerator.
  ~RVEnumerator() override;

  /// Shares the other's enumerator and its cursor.
  RVEnumerator& operator=(const RVEnumerator& other);
  /// Holds \p enumerator, retained.
  RVEnumerator& operator=(NSEnumerator* enumerator);
  /// The held NSEnumerator, not retained; nil when nothing is held.
  operator NSEnumerator*() const;
  /// The class type of enumerators.
  /// \return "2RVEnumerator" (by design, see RVObject::ClassType()).
  static RVString ClassType();

  /// True when nothing is held; an exhausted enumerator is not empty.
  /// \return whether nothing is held.
  bool IsEmpty() const override;
  /// Releases the enumerator: the handle holds nothing afterwards.
  void Empty() override;

  /// A heap handle for the next element (the caller deletes it); at the end,
  /// an empty plain RVObject.
  /// \return a new handle, never null.
  RVObject* NextObject();
  /// The next element as a string; at the end an empty string, which an
  /// element that is itself the empty string cannot be told apart from.
  /// \return the element, or an empty string at the end.
  RVString NextStringObject();
  /// The elements not yet given out.
  /// \return them as an array; the enumerator is at its end afterwards.
  RVArray AllObjects() const;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>

#endif
