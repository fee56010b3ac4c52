/// \file
/// RVURL, a URL, absolute or relative to a base.
#ifndef ROVANI_RVURL_H
#define ROVANI_RVURL_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// A handle on a URL (NSURL). Texts that are not URLs give an empty
/// handle. The derivations work on the absolute string with the string path
/// operations, not on parsed URL components.
class RV_EXPORT RVURL : public RVObject {
 public:
  /// An empty URL.
  RVURL();
  /// Shares the other's URL.
  RVURL(const RVURL& other);
  /// Wraps obj as it is, retained, whatever its class.
  RVURL(RVId obj);
  /// The URL the text spells; empty when the text is not a URL.
  /// \param text the URL's text, such as "http://host/a" ("a b" is no URL).
  RVURL(const RVString& text);
  /// relative resolved against base; empty when the two cannot be combined.
  RVURL(const RVURL& base, const RVString& relative);
  /// Releases the URL.
  ~RVURL() override;

  /// Shares the other's URL.
  RVURL& operator=(const RVURL& other);
  /// Holds \p obj as it is, retained, whatever its class.
  RVURL& operator=(RVId obj);
  /// The URL the text spells; empty when the text is not a URL.
  /// \param text the URL's text.
  RVURL& operator=(const RVString& text);

  using RVObject::operator==;
  using RVObject::operator!=;
  /// Equality of the URLs (`isEqual:`); an empty handle is never equal.
  /// \return whether both hold equal URLs.
  bool operator==(const RVURL& other) const;
  /// The negation of operator==(const RVURL&).
  bool operator!=(const RVURL& other) const;

  /// A file URL for path; a leading tilde names the user's home directory.
  /// \param path the file's path.
  /// \return the file URL.
  static RVURL URLFromFilePath(const RVString& path);
  /// The class type, "RVURL".
  static RVString ClassType();

  /// The whole URL as text, resolved against its base.
  /// \return the text; empty for an empty URL.
  RVString AbsoluteString() const;
  /// The text the URL was made from, without its base.
  /// \return the text; empty for an empty URL.
  RVString RelativeString() const;
  /// The last component of the URL's path.
  /// \return the component.
  RVString LastPathComponent() const;
  /// The extension of the last path component.
  /// \return the extension without its dot; empty when there is none.
  RVString PathExtension() const;
  /// The URL resolved against its base.
  /// \return a URL without a base.
  RVURL AbsoluteURL() const;
  /// The base the URL was made relative to.
  /// \return the base; empty when there is none.
  RVURL BaseURL() const;
  /// The relative path as the platform answers it: the handle is an RVURL but
  /// its object is a string. Read it through the RVObject members (Ref(),
  /// Description()) or assign it to an RVString.
  /// \note Kept by design. GNUstep drops a leading "/" from the path.
  /// \return an RVURL handle holding a string.
  RVURL RelativePath() const;

  /// A fresh URL from AbsoluteString() with "/" and \p component appended.
  /// Each derivation builds the new text from AbsoluteString() with the
  /// string path operations and makes a fresh URL of it, so the result has
  /// no base URL.
  /// \warning Path rules apply to the whole text: appending or deleting a
  ///   component folds the "//" after the scheme into one "/"
  ///   ("http://host/a" plus "b" gives "http:/host/a/b"). Kept by design.
  ///   An empty component or extension gives a copy of this URL.
  RVURL URLByAppendingPathComponent(const RVString& component) const;
  /// A fresh URL from AbsoluteString() with "." and \p extension appended.
  /// An empty extension gives a copy of this URL; the result has no base.
  /// \param extension the extension, without the dot.
  RVURL URLByAppendingPathExtension(const RVString& extension) const;
  /// A fresh URL from AbsoluteString() without its last path component.
  /// \warning The "//" after the scheme folds into one "/", as for
  ///   URLByAppendingPathComponent(). The result has no base.
  RVURL URLByDeletingLastPathComponent() const;
  /// Works on the absolute string of a fresh empty URL, never on this one:
  /// every URL answers the same, the URL made from a nil text.
  /// \warning Kept by design: the answer is always an empty URL, whatever
  ///   this URL is.
  /// \return an empty URL.
  RVURL URLByDeletingPathExtension() const;
};

#endif
