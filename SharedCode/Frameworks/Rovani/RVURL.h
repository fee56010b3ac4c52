// RVURL: a handle on a URL (NSURL). Texts that are not URLs give an empty
// handle. The derivations work on the absolute string with the string path
// operations, not on parsed URL components.
#ifndef ROVANI_RVURL_H
#define ROVANI_RVURL_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVURL : public RVObject {
 public:
  RVURL();
  RVURL(const RVURL& other);
  // Wraps obj as it is, retained, whatever its class.
  RVURL(RVId obj);
  // The URL the text spells; empty when the text is not a URL.
  RVURL(const RVString& text);
  // relative resolved against base; empty when the two cannot be combined.
  RVURL(const RVURL& base, const RVString& relative);
  ~RVURL() override;

  RVURL& operator=(const RVURL& other);
  RVURL& operator=(RVId obj);
  RVURL& operator=(const RVString& text);

  using RVObject::operator==;
  using RVObject::operator!=;
  bool operator==(const RVURL& other) const;
  bool operator!=(const RVURL& other) const;

  // A file URL for path; a leading tilde names the user's home directory.
  static RVURL URLFromFilePath(const RVString& path);
  static RVString ClassType();

  RVString AbsoluteString() const;
  RVString RelativeString() const;
  RVString LastPathComponent() const;
  RVString PathExtension() const;
  RVURL AbsoluteURL() const;
  RVURL BaseURL() const;
  // The relative path as the platform answers it: the handle is an RVURL but
  // its object is a string. Read it through the RVObject members (Ref(),
  // Description()) or assign it to an RVString.
  RVURL RelativePath() const;

  // Each builds the new text from AbsoluteString() with the string path
  // operations and makes a fresh URL of it, so the result has no base URL.
  // Path rules apply to the whole text: appending or deleting a component
  // folds the "//" after the scheme into one "/" ("http:/host/a/b"). An
  // empty component or extension gives a copy of this URL.
  RVURL URLByAppendingPathComponent(const RVString& component) const;
  RVURL URLByAppendingPathExtension(const RVString& extension) const;
  RVURL URLByDeletingLastPathComponent() const;
  // Works on the absolute string of a fresh empty URL, never on this one:
  // every URL answers the same, the URL made from a nil text.
  RVURL URLByDeletingPathExtension() const;
};

#endif
