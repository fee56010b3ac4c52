// RVBundle: a handle on a bundle (NSBundle): the program's own package on
// disk with its identifier, paths, resources and localised string tables.
#ifndef ROVANI_RVBUNDLE_H
#define ROVANI_RVBUNDLE_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVBundle : public RVObject {
 public:
  RVBundle();
  RVBundle(const NSBundle* bundle);
  RVBundle(const RVBundle& other);
  ~RVBundle() override;

  RVBundle& operator=(const RVBundle& other);
  RVBundle& operator=(const NSBundle* bundle);
  // Still assigns, but logs a warning every time: take an RVBundle or an
  // NSBundle instead of an untyped object.
  RVBundle& operator=(RVId obj);

  // One object for the whole program, made on first use; not a copy.
  static RVBundle& MainBundle();
  // "localizable.strings", for callers that name the default table
  // themselves; the short localisation members below do not use it.
  static RVString DefaultStringsTableName();
  static RVString ClassType();

  // Each answer is empty when the bundle has none.
  RVString BundleIdentifier() const;
  RVString ExecutablePath() const;
  RVString BundlePath() const;
  RVString ResourcePath() const;
  RVString PathForResourceOfType(RVString name, RVString type);

  // The text for key in the named table; which table an empty name means and
  // what a missing key gives are the platform's rules (the default table,
  // and the default value, or the key itself when that is empty).
  RVString LocalizedStringForKeyWithDefaultValueInTableNamed(const RVString& key,
                                                             const RVString& defaultValue,
                                                             const RVString& table) const;
  // The long form with "" for the arguments not given.
  RVString LocalizedStringForKey(const RVString& key) const;
  RVString LocalizedStringForKeyInTableNamed(const RVString& key, const RVString& table) const;
  RVString LocalizedStringForKeyWithDefaultValue(const RVString& key,
                                                 const RVString& defaultValue) const;
};

#endif
