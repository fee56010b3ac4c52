// RVUserDefaults: an application's persistent settings, for the current
// user (the standard store) or for every user of this machine (the
// all-users store). The settings live in the application's preferences
// domain, named by its main bundle's identifier (the process name when the
// bundle has none) or, for a tool that manages another application's
// settings, by the name it is given. The handle itself holds no object.
//
// Reading goes through the same path in both modes: the current user's
// value for the application first, then every user's value.
#ifndef ROVANI_RVUSERDEFAULTS_H
#define ROVANI_RVUSERDEFAULTS_H

#include <Rovani/RVArray.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVUserDefaults : public RVObject {
 public:
  // The standard store.
  RVUserDefaults();
  RVUserDefaults(bool allUsers);
  // The store of the named domain (an application identifier such as
  // "com.example.app") instead of this program's own. An empty name stands
  // for this program's own domain, its process name.
  RVUserDefaults(const RVString& applicationID, bool allUsers);
  ~RVUserDefaults() override;

  static RVUserDefaults StandardUserDefaults();
  static RVUserDefaults StandardAllUsersDefaults();
  static RVString ClassType();
  bool AccessingAllUsersDefaults() const;

  // A new heap handle of the class that fits the stored value (the caller
  // deletes it), or null when the key has no value.
  RVObject* ObjectForKey(RVString key) const;
  // Every key of the domain with its value, whichever store this object is
  // for: the current user's values over every user's, all-users changes
  // still pending in this process included. Only the domain itself: unlike
  // ObjectForKey it sees neither the process's arguments nor other domains.
  // A dictionary without entries when the domain holds nothing.
  RVDictionary DictionaryRepresentation() const;
  // The typed getters answer the empty or zero result when the key is
  // missing or holds another type. In the second case the handle made for
  // the value is not deleted: it leaks, as callers of this class have
  // always seen. BoolForKey is the exception and never leaks.
  RVArray ArrayForKey(RVString key) const;
  // The elements' types are not examined.
  RVArray StringArrayForKey(RVString key) const;
  RVDictionary DictionaryForKey(RVString key) const;
  RVData DataForKey(RVString key) const;
  RVDate DateForKey(RVString key) const;
  RVString StringForKey(RVString key) const;
  RVNumber NumberForKey(RVString key) const;
  int IntegerForKey(RVString key) const;
  float FloatForKey(RVString key) const;
  double DoubleForKey(RVString key) const;
  // A boolean, or else a number, read as bool.
  bool BoolForKey(RVString key) const;

  // Stores the value's object; an empty value removes the key. The
  // standard store keeps the change at once; the all-users store keeps it
  // pending in this process until Synchronize.
  void SetObjectForKey(const RVObject& value, RVString key);
  void SetIntegerForKey(int value, RVString key);
  void SetFloatForKey(float value, RVString key);
  void SetDoubleForKey(double value, RVString key);
  void SetBoolForKey(bool value, RVString key);

  // Removes the key from the all-users store, whichever store this object
  // is for: a standard-store value stays in place. Always true.
  bool RemoveObjectForKey(RVString key) const;
  // Does nothing; always false.
  bool RemoveUserDefaults() const;
  // Writes the all-users store's pending changes, whichever store this
  // object is for. False when they could not be written (they stay
  // pending).
  bool Synchronize() const;

 private:
  RVString applicationID_;
  bool allUsers_;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDate.h>

#endif
