/// \file
/// RVArray, an immutable array with typed getters.
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

/// A handle on an immutable NSArray. Every change builds a new array,
/// so handles copied from one another diverge at the first change.
///
/// \warning Indices go to the platform unchecked: an index out of range
///   raises the platform's range exception (an NSException), which reaches
///   the caller.
/// \note A change copies the whole array twice, so appending n elements one
///   by one costs on the order of n squared.
class RV_EXPORT RVArray : public RVObject {
 public:
  /// An empty array (nothing held).
  RVArray();
  /// Shares the other's array.
  RVArray(const RVArray& other);
  /// Throws std::bad_cast unless other is an RVArray.
  /// \exception std::bad_cast when \p other is not an RVArray.
  /// \param other an RVArray seen through its base.
  RVArray(const RVObject& other);
  /// Holds the object, retained; a Core Foundation reference is the same
  /// object.
  ///@{
  RVArray(NSArray* array);
  RVArray(CFArrayRef array);
  ///@}
  /// Releases the array.
  ~RVArray() override;

  /// Shares the other's array.
  RVArray& operator=(const RVArray& other);
  /// Holds the object, retained; a Core Foundation reference is the same
  /// object.
  ///@{
  RVArray& operator=(NSArray* array);
  RVArray& operator=(CFArrayRef array);
  ///@}
  /// The held NSArray, not retained; nil when nothing is held.
  operator NSArray*() const;
  /// The held array, not retained; null when nothing is held.
  operator CFArrayRef() const;
  /// The class type, "RVArray".
  static RVString ClassType();

  /// Equality of the held array (isEqual:); an empty handle is never equal.
  bool operator==(NSArray* other) const;
  /// The negation of operator==(NSArray*).
  /// \return whether the arrays differ; true for an empty handle.
  bool operator!=(NSArray* other) const;

  /// Whether there are no elements.
  /// \return true when nothing is held or the array has no elements.
  bool IsEmpty() const override;
  /// The number of elements.
  /// \return the count; 0 when nothing is held.
  unsigned int Count() const;
  /// The element itself.
  /// \param index the position, below Count().
  /// \return the element, not retained.
  RVId InternalObjectAtIndex(unsigned int index) const;
  /// Heap handles the caller deletes, of the class RVObject::Create() picks.
  /// \param index the position, below Count().
  /// \return a new handle for the element.
  ///@{
  RVObject* ObjectAtIndex(unsigned int index) const;
  RVObject* operator[](int index) const;
  ///@}

  /// Typed getters make no class test: the element is held as it is.
  /// So StringAtIndex of a number gives an RVString holding the number.
  /// \param index the position, below Count().
  /// \return a handle sharing the element.
  ///@{
  RVString StringAtIndex(unsigned int index) const;
  RVNumber NumberAtIndex(unsigned int index) const;
  RVBool BooleanAtIndex(unsigned int index) const;
  RVData DataAtIndex(unsigned int index) const;
  RVDate DateAtIndex(unsigned int index) const;
  RVDictionary DictionaryAtIndex(unsigned int index) const;
  RVArray ArrayAtIndex(unsigned int index) const;
  RVValue ValueAtIndex(unsigned int index) const;
  ///@}
  /// The elements' descriptions joined.
  RVString ComponentsJoinedByString(const RVString& separator) const;

  /// Appends the object.
  /// The object is added as it is: an empty handle raises the platform's
  /// invalid-argument exception.
  /// \param object the element appended; not empty.
  void AddObject(const RVObject& object);
  /// Removes the last element.
  void RemoveLastObject();
  /// Removes one element.
  /// \param index the position, below Count().
  void RemoveObjectAtIndex(unsigned int index);
  /// Swaps two elements.
  /// \param first a position, below Count().
  /// \param second a position, below Count().
  void ExchangeObjectAtIndexWithObjectAtIndex(unsigned int first, unsigned int second);
  /// Replaces one element.
  /// An empty dictionary or array handle is stored as an empty dictionary or
  /// array; any other empty handle is passed on (and refused by the platform).
  /// \param object the new element.
  /// \param index the position, below Count().
  void SetObjectAtIndex(const RVObject& object, unsigned int index);
  /// Releases the array: the handle holds nothing afterwards.
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
