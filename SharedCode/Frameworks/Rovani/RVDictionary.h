// RVDictionary: a handle on an immutable NSDictionary with string keys.
// Every change builds a new dictionary, so handles copied from one another
// diverge at the first change.
#ifndef ROVANI_RVDICTIONARY_H
#define ROVANI_RVDICTIONARY_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVArray;
class RVBool;
class RVData;
class RVEnumerator;
class RVNumber;

class RV_EXPORT RVDictionary : public RVObject {
 public:
  RVDictionary();
  RVDictionary(const RVDictionary& other);
  RVDictionary(RVId obj);
  RVDictionary(NSDictionary* dictionary);
  RVDictionary(CFDictionaryRef dictionary);
  // Parses XML property-list data; data holding only a dictionary body (a run
  // of key and value elements) is read as a dictionary too. Anything that is
  // not a dictionary leaves the handle empty.
  RVDictionary(const RVData& data);
  ~RVDictionary() override;

  RVDictionary& operator=(const RVDictionary& other);
  RVDictionary& operator=(RVId obj);
  RVDictionary& operator=(NSDictionary* dictionary);
  RVDictionary& operator=(CFDictionaryRef dictionary);
  RVDictionary& operator=(const RVData& data);
  operator NSDictionary*() const;
  operator CFDictionaryRef() const;
  static RVString ClassType();

  // True when there are no entries (or nothing is held).
  bool IsEmpty() const override;
  unsigned int Count() const;

  // A heap handle made for the value (the caller deletes it), or null.
  RVObject* ValueForKey(const RVString& key) const;
  // The value itself, not retained, or nil.
  RVId InternalValueForKey(const RVString& key) const;
  bool RVIdForKeyIfPresent(const RVString& key, RVId& out) const;
  // A heap handle when the value's handle is of the given class type, else
  // null. A number asked for as RVBool is read as a boolean.
  RVObject* ValueOfClassTypeForKey(const RVString& classType, const RVString& key) const;
  // The class type of the handle the value would get; empty when absent.
  RVString ObjectsClassTypeForKey(const RVString& key) const;

  // Typed getters: an absent key or a value of another class gives an empty
  // handle (BooleanForKey: false; it also reads numbers, non-zero is true).
  RVString StringForKey(const RVString& key) const;
  RVArray ArrayForKey(const RVString& key) const;
  RVData DataForKey(const RVString& key) const;
  RVDate DateForKey(const RVString& key) const;
  RVBool BooleanForKey(const RVString& key) const;
  RVNumber NumberForKey(const RVString& key) const;
  RVDictionary DictionaryForKey(const RVString& key) const;
  RVEnumerator KeyEnumerator() const;

  // An empty value is stored as a placeholder: an empty dictionary, array or
  // string for those classes, the number of its truth for a boolean, and
  // NSNull for anything else; a key is never set to nothing.
  void SetObjectForKey(const RVObject& value, const RVString& key);
  // As SetObjectForKey, but only a plain RVObject becomes NSNull; an empty
  // handle of any other class removes the key.
  void SetValueForKey(const RVObject& value, const RVString& key);
  void RemoveObjectForKey(const RVString& key);
  // The other's entries win over this dictionary's entries with equal keys.
  void AddDictionary(const RVDictionary& other);
  RVDictionary& operator+=(const RVDictionary& other);
  RVDictionary& operator+=(NSDictionary* other);
  RVDictionary& operator+=(CFDictionaryRef other);

  // Empty when the file is missing or its root is not a dictionary.
  static RVDictionary DictionaryWithContentsOfFile(const RVString& path);
  // XML property-list files, every value exactly as it is held (dates to
  // the second); false, with the file left as it was, when the file cannot
  // be written or the dictionary holds what a property list cannot (NSNull,
  // a key that is not a string, a control character, a date outside the
  // years 1 to 9999).
  bool WriteToFile(const RVString& path) const;
  bool WriteToFileAtomically(const RVString& path) const;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDate.h>
#include <Rovani/RVArray.h>
#include <Rovani/RVBool.h>
#include <Rovani/RVData.h>
#include <Rovani/RVEnumerator.h>
#include <Rovani/RVNumber.h>

#endif
