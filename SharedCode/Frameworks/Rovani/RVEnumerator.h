// RVEnumerator: a handle on a one-pass NSEnumerator. Copies share the cursor.
#ifndef ROVANI_RVENUMERATOR_H
#define ROVANI_RVENUMERATOR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVArray;

class RV_EXPORT RVEnumerator : public RVObject {
 public:
  RVEnumerator();
  RVEnumerator(const RVEnumerator& other);
  RVEnumerator(NSEnumerator* enumerator);
  ~RVEnumerator() override;

  RVEnumerator& operator=(const RVEnumerator& other);
  RVEnumerator& operator=(NSEnumerator* enumerator);
  operator NSEnumerator*() const;
  static RVString ClassType();

  // True when nothing is held; an exhausted enumerator is not empty.
  bool IsEmpty() const override;
  void Empty() override;

  // A heap handle for the next element (the caller deletes it); at the end,
  // an empty plain RVObject.
  RVObject* NextObject();
  // The next element as a string; at the end an empty string, which an
  // element that is itself the empty string cannot be told apart from.
  RVString NextStringObject();
  // The elements not yet given out.
  RVArray AllObjects() const;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>

#endif
