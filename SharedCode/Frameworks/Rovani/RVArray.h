// RVArray: a handle on an immutable NSArray. Every change builds a new array,
// so handles copied from one another diverge at the first change. Indices go
// to the platform unchecked: an index out of range raises the platform's
// range exception, which reaches the caller.
#ifndef ROVANI_RVARRAY_H
#define ROVANI_RVARRAY_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVBool;
class RVData;
class RVDictionary;
class RVNumber;
class RVValue;

class RV_EXPORT RVArray : public RVObject {
 public:
  RVArray();
  RVArray(const RVArray& other);
  // Throws std::bad_cast unless other is an RVArray.
  RVArray(const RVObject& other);
  RVArray(NSArray* array);
  RVArray(CFArrayRef array);
  ~RVArray() override;

  RVArray& operator=(const RVArray& other);
  RVArray& operator=(NSArray* array);
  RVArray& operator=(CFArrayRef array);
  operator NSArray*() const;
  operator CFArrayRef() const;
  static RVString ClassType();

  // Equality of the held array (isEqual:); an empty handle is never equal.
  bool operator==(NSArray* other) const;
  bool operator!=(NSArray* other) const;

  bool IsEmpty() const override;
  unsigned int Count() const;
  RVId InternalObjectAtIndex(unsigned int index) const;
  // Heap handles the caller deletes.
  RVObject* ObjectAtIndex(unsigned int index) const;
  RVObject* operator[](int index) const;

  // Typed getters make no class test: the element is held as it is.
  RVString StringAtIndex(unsigned int index) const;
  RVNumber NumberAtIndex(unsigned int index) const;
  RVBool BooleanAtIndex(unsigned int index) const;
  RVData DataAtIndex(unsigned int index) const;
  RVDate DateAtIndex(unsigned int index) const;
  RVDictionary DictionaryAtIndex(unsigned int index) const;
  RVArray ArrayAtIndex(unsigned int index) const;
  RVValue ValueAtIndex(unsigned int index) const;
  RVString ComponentsJoinedByString(const RVString& separator) const;

  // The object is added as it is: an empty handle raises the platform's
  // invalid-argument exception.
  void AddObject(const RVObject& object);
  void RemoveLastObject();
  void RemoveObjectAtIndex(unsigned int index);
  void ExchangeObjectAtIndexWithObjectAtIndex(unsigned int first, unsigned int second);
  // An empty dictionary or array handle is stored as an empty dictionary or
  // array; any other empty handle is passed on (and refused by the platform).
  void SetObjectAtIndex(const RVObject& object, unsigned int index);
  // Releases the array: the handle holds nothing afterwards.
  void RemoveAllObjects();
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDate.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVValue.h>

#endif
