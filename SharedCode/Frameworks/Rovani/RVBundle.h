/// \file
/// RVBundle, the main bundle, resource paths and localised strings.
#ifndef ROVANI_RVBUNDLE_H
#define ROVANI_RVBUNDLE_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// A handle on a bundle (NSBundle): the program's own package on
/// disk with its identifier, paths, resources and localised string tables.
///
/// The main bundle of a plain program is described by
/// `<program dir>/Resources/<program name>/Info-gnustep.plist` (its
/// `CFBundleIdentifier`), with string tables in
/// `<program dir>/Resources/<program name>/Resources/English.lproj/Localizable.strings`
/// (UTF-8 with a byte-order mark, or GNUstep warns).
class RV_EXPORT RVBundle : public RVObject {
 public:
  /// An empty bundle handle.
  RVBundle();
  /// Holds \p bundle, retained.
  RVBundle(const NSBundle* bundle);
  /// Shares the other's bundle.
  RVBundle(const RVBundle& other);
  /// Releases the bundle.
  ~RVBundle() override;

  /// Shares the other's bundle.
  RVBundle& operator=(const RVBundle& other);
  /// Holds \p bundle, retained.
  RVBundle& operator=(const NSBundle* bundle);
  /// Still assigns, but logs a warning every time: take an RVBundle or an
  /// NSBundle instead of an untyped object.
  RVBundle& operator=(RVId obj);

  /// One object for the whole program, made on first use; not a copy.
  /// \return the program's main bundle.
  static RVBundle& MainBundle();
  /// "localizable.strings", for callers that name the default table
  /// themselves; the short localisation members below do not use it.
  /// \return "localizable.strings".
  static RVString DefaultStringsTableName();
  /// The class type, "RVBundle".
  static RVString ClassType();

  // Each answer is empty when the bundle has none.
  /// The bundle's identifier (`CFBundleIdentifier`).
  /// \return the identifier; empty when the bundle has none.
  RVString BundleIdentifier() const;
  /// The path of the bundle's executable.
  /// \return the path; empty when the bundle has none.
  RVString ExecutablePath() const;
  /// The path of the bundle itself.
  /// \return the path; empty for an empty handle.
  RVString BundlePath() const;
  /// The path of the bundle's resource directory.
  /// \return the path; empty when the bundle has none.
  RVString ResourcePath() const;
  /// The path of a resource file in the bundle.
  /// \param name the resource's name without extension.
  /// \param type the extension, without the dot.
  /// \return the path; empty when there is no such resource.
  RVString PathForResourceOfType(RVString name, RVString type);

  /// The text for key in the named table; which table an empty name means and
  /// what a missing key gives are the platform's rules (the default table,
  /// and the default value, or the key itself when that is empty).
  /// \param key the key looked up.
  /// \param defaultValue the text for a missing key; empty for the key itself.
  /// \param table the table's name without extension; empty for the default
  ///   table.
  /// \return the localised text.
  RVString LocalizedStringForKeyWithDefaultValueInTableNamed(const RVString& key,
                                                             const RVString& defaultValue,
                                                             const RVString& table) const;
  /// The long form with "" for the arguments not given.
  /// \return the text in the default table; the key itself when missing.
  RVString LocalizedStringForKey(const RVString& key) const;
  /// The long form with "" for the default value.
  /// \param key the key looked up.
  /// \param table the table's name without extension.
  /// \return the text; the key itself when missing.
  RVString LocalizedStringForKeyInTableNamed(const RVString& key, const RVString& table) const;
  /// The long form with "" for the table (the default table).
  /// \param key the key looked up.
  /// \param defaultValue the text for a missing key.
  /// \return the text, or \p defaultValue when missing.
  RVString LocalizedStringForKeyWithDefaultValue(const RVString& key,
                                                 const RVString& defaultValue) const;
};

#endif
