/// \file
/// RVUserDefaults, an application's persistent settings.
#ifndef ROVANI_RVUSERDEFAULTS_H
#define ROVANI_RVUSERDEFAULTS_H

#include <Rovani/RVArray.h>
#include <Rovani/RVData.h>
#include <Rovani/RVDefines.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVNumber.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// An application's persistent settings, for the current
/// user (the standard store) or for every user of this machine (the
/// all-users store). The settings live in the application's preferences
/// domain, named by its main bundle's identifier (the process name when the
/// bundle has none) or, for a tool that manages another application's
/// settings, by the name it is given. The handle itself holds no object.
///
/// Reading goes through the same path in both modes: the current user's
/// value for the application first, then every user's value.
///
/// GNUstep keeps the current user's store in `~/GNUstep/Defaults` (the
/// home directory from the password file); `GNUSTEP_CONFIG_FILE` naming a
/// file that holds `GNUSTEP_USER_DEFAULTS_DIR=<dir>` moves it. The all-users
/// store is `<dir>/<domain>.plist` with `<dir>` from
/// `ROVANI_ALL_USERS_DEFAULTS_DIR`, else `/var/lib/rovani/defaults`.
/// \note The class type is "4RVUserDefaults" (see RVObject::ClassType()).
class RV_EXPORT RVUserDefaults : public RVObject {
 public:
  /// The standard store.
  RVUserDefaults();
  /// This program's own domain, for the current user or for every user.
  /// \param allUsers true for the all-users store.
  RVUserDefaults(bool allUsers);
  /// The store of the named domain (an application identifier such as
  /// "com.example.app") instead of this program's own. An empty name stands
  /// for this program's own domain, its process name.
  /// \param applicationID the domain, or empty for this program's own.
  /// \param allUsers true for the all-users store.
  RVUserDefaults(const RVString& applicationID, bool allUsers);
  /// Nothing to write: changes are not flushed here.
  ~RVUserDefaults() override;

  /// This program's standard store.
  /// \return RVUserDefaults(false).
  static RVUserDefaults StandardUserDefaults();
  /// This program's all-users store.
  /// \return RVUserDefaults(true).
  static RVUserDefaults StandardAllUsersDefaults();
  /// The class type of user defaults.
  /// \return "4RVUserDefaults" (by design, see RVObject::ClassType()).
  static RVString ClassType();
  /// Whether this object is for the all-users store.
  /// \return the flag it was made with.
  bool AccessingAllUsersDefaults() const;

  /// A new heap handle of the class that fits the stored value (the caller
  /// deletes it), or null when the key has no value.
  /// \note Reads through GNUstep's standard defaults, so it also sees the
  ///   process's arguments (`-key value`) and GNUstep's global domain.
  /// \return a new handle, or null.
  RVObject* ObjectForKey(RVString key) const;
  /// Every key of the domain with its value, whichever store this object is
  /// for: the current user's values over every user's, all-users changes
  /// still pending in this process included. Only the domain itself: unlike
  /// ObjectForKey it sees neither the process's arguments nor other domains.
  /// \return the entries; a dictionary without entries when the domain
  ///   holds nothing.
  RVDictionary DictionaryRepresentation() const;
  /// The typed getters answer the empty or zero result when the key is
  /// missing or holds another type.
  /// \warning When the key holds another type, the handle made for the
  ///   value is not deleted: it leaks, as callers of this class have always
  ///   seen (kept by design). BoolForKey is the exception and never leaks.
  /// \return the value, or the empty or zero result.
  ///@{
  RVArray ArrayForKey(RVString key) const;
  /// The elements' types are not examined.
  /// \warning Leaks the handle made for a value of another type, as the
  ///   other typed getters do.
  /// \return the array, or an empty array.
  RVArray StringArrayForKey(RVString key) const;
  RVDictionary DictionaryForKey(RVString key) const;
  RVData DataForKey(RVString key) const;
  RVDate DateForKey(RVString key) const;
  RVString StringForKey(RVString key) const;
  RVNumber NumberForKey(RVString key) const;
  int IntegerForKey(RVString key) const;
  float FloatForKey(RVString key) const;
  double DoubleForKey(RVString key) const;
  ///@}
  /// A boolean, or else a number, read as bool.
  /// \return the truth; false when the key is missing or holds another
  ///   type (a string, say). Never leaks.
  bool BoolForKey(RVString key) const;

  /// Stores the value's object; an empty value removes the key. The
  /// standard store keeps the change at once; the all-users store keeps it
  /// pending in this process until Synchronize.
  /// \note The stores refuse NSNull and RVBool's objects (the key is left
  ///   as it was): store RVNumber(bool) for a boolean.
  /// \param value the value stored, or an empty handle to remove the key.
  /// \param key the key set.
  void SetObjectForKey(const RVObject& value, RVString key);
  /// Stores a number made from \p value, as SetObjectForKey().
  ///@{
  void SetIntegerForKey(int value, RVString key);
  void SetFloatForKey(float value, RVString key);
  void SetDoubleForKey(double value, RVString key);
  void SetBoolForKey(bool value, RVString key);
  ///@}

  /// Removes the key from the all-users store, whichever store this object
  /// is for: a standard-store value stays in place. Always true.
  /// \note Kept by design; to remove a current user's value, store an
  ///   empty handle with SetObjectForKey().
  /// \param key the key removed (pending until Synchronize()).
  /// \return true.
  bool RemoveObjectForKey(RVString key) const;
  /// Does nothing; always false.
  /// \return false.
  bool RemoveUserDefaults() const;
  /// Writes the all-users store's pending changes, whichever store this
  /// object is for. False when they could not be written (they stay
  /// pending).
  /// \return whether the pending changes were written.
  bool Synchronize() const;

 private:
  RVString applicationID_;
  bool allUsers_;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDate.h>

#endif
