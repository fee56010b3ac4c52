/// \file
/// RVDictionary, an immutable dictionary with string keys.
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

/// A handle on an immutable NSDictionary with string keys.
/// Every change builds a new dictionary, so handles copied from one another
/// diverge at the first change.
///
/// Values go in and out as handles that share the platform object; nothing
/// is copied. A change copies the whole dictionary twice, so building a
/// dictionary of n keys one key at a time costs on the order of n squared.
/// \note The class type is "2RVDictionary", not "RVDictionary" (see
///   RVObject::ClassType()): compare with RVDictionary::ClassType().
class RV_EXPORT RVDictionary : public RVObject {
 public:
  /// An empty dictionary (nothing held).
  RVDictionary();
  /// Shares the other's dictionary.
  RVDictionary(const RVDictionary& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test; a Core Foundation reference is the same object.
  ///@{
  RVDictionary(RVId obj);
  RVDictionary(NSDictionary* dictionary);
  RVDictionary(CFDictionaryRef dictionary);
  ///@}
  /// Parses XML property-list data; data holding only a dictionary body (a run
  /// of key and value elements) is read as a dictionary too. Anything that is
  /// not a dictionary leaves the handle empty.
  /// \note When a dictionary body is wrapped into a document, the bytes
  ///   passed on are counted in UTF-16 units, not UTF-8 bytes, so a body with
  ///   non-ASCII text is cut short (and then usually fails). Kept by design.
  /// \param data the property-list text.
  RVDictionary(const RVData& data);
  /// Releases the dictionary.
  ~RVDictionary() override;

  /// Shares the other's dictionary.
  RVDictionary& operator=(const RVDictionary& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test; a Core Foundation reference is the same object.
  ///@{
  RVDictionary& operator=(RVId obj);
  RVDictionary& operator=(NSDictionary* dictionary);
  RVDictionary& operator=(CFDictionaryRef dictionary);
  ///@}
  /// Parses XML property-list data, as RVDictionary(const RVData&).
  /// \param data the property-list text.
  RVDictionary& operator=(const RVData& data);
  /// The held NSDictionary, not retained; nil when nothing is held.
  operator NSDictionary*() const;
  /// The held dictionary, not retained; null when nothing is held.
  operator CFDictionaryRef() const;
  /// The class type of dictionaries.
  /// \return "2RVDictionary" (by design, see RVObject::ClassType()).
  static RVString ClassType();

  /// True when there are no entries (or nothing is held).
  /// \return whether Count() is 0.
  bool IsEmpty() const override;
  /// The number of entries.
  /// \return the count; 0 when nothing is held.
  unsigned int Count() const;

  /// A heap handle made for the value (the caller deletes it), or null.
  /// The handle's class is chosen by RVObject::Create().
  /// \return a new handle, or null when the key is absent.
  RVObject* ValueForKey(const RVString& key) const;
  /// The value itself, not retained, or nil.
  /// \return the stored object; nil when the key is absent.
  RVId InternalValueForKey(const RVString& key) const;
  /// The value itself, stored in \p out.
  /// \param key the key looked up.
  /// \param out set to the stored object (not retained), or nil.
  /// \return whether the key has a value.
  bool RVIdForKeyIfPresent(const RVString& key, RVId& out) const;
  /// A heap handle when the value's handle is of the given class type, else
  /// null. A number asked for as RVBool is read as a boolean.
  /// \param classType the class type wanted, such as RVString::ClassType().
  /// \param key the key looked up.
  /// \return a new handle the caller deletes, or null.
  RVObject* ValueOfClassTypeForKey(const RVString& classType, const RVString& key) const;
  /// The class type of the handle the value would get; empty when absent.
  /// \return the class type, such as "RVString"; empty when absent.
  RVString ObjectsClassTypeForKey(const RVString& key) const;

  /// Typed getters: an absent key or a value of another class gives an empty
  /// handle (BooleanForKey: false; it also reads numbers, non-zero is true).
  /// The handle shares the stored object.
  /// \return the value, or the empty (false) result.
  ///@{
  RVString StringForKey(const RVString& key) const;
  RVArray ArrayForKey(const RVString& key) const;
  RVData DataForKey(const RVString& key) const;
  RVDate DateForKey(const RVString& key) const;
  RVBool BooleanForKey(const RVString& key) const;
  RVNumber NumberForKey(const RVString& key) const;
  RVDictionary DictionaryForKey(const RVString& key) const;
  ///@}
  /// An enumerator over the keys.
  /// \return a one-pass enumerator of the keys (strings); an empty
  ///   enumerator when nothing is held.
  RVEnumerator KeyEnumerator() const;

  /// Sets \p key to the value's object.
  /// An empty value is stored as a placeholder: an empty dictionary, array or
  /// string for those classes, the number of its truth for a boolean, and
  /// NSNull for anything else; a key is never set to nothing.
  void SetObjectForKey(const RVObject& value, const RVString& key);
  /// As SetObjectForKey, but only a plain RVObject becomes NSNull; an empty
  /// handle of any other class removes the key.
  void SetValueForKey(const RVObject& value, const RVString& key);
  /// Removes \p key; nothing happens when it is absent.
  void RemoveObjectForKey(const RVString& key);
  /// Adds the other's entries.
  /// The other's entries win over this dictionary's entries with equal keys.
  void AddDictionary(const RVDictionary& other);
  /// Adds the other's entries, as AddDictionary().
  ///@{
  RVDictionary& operator+=(const RVDictionary& other);
  RVDictionary& operator+=(NSDictionary* other);
  RVDictionary& operator+=(CFDictionaryRef other);
  ///@}

  /// Reads a property-list file.
  /// \return the dictionary; empty when the file is missing or its root is
  ///   not a dictionary.
  static RVDictionary DictionaryWithContentsOfFile(const RVString& path);
  /// Writes the dictionary as an XML property-list file, in place or through
  /// a temporary file (atomically). Every value is written exactly as it is
  /// held (dates to the second); the library's booleans become
  /// `<true/>`/`<false/>`.
  /// \return false, with the file left as it was, when the file cannot be
  ///   written or the dictionary holds what a property list cannot (NSNull,
  ///   a key that is not a string, a control character, a date outside the
  ///   years 1 to 9999).
  ///@{
  bool WriteToFile(const RVString& path) const;
  bool WriteToFileAtomically(const RVString& path) const;
  ///@}
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
