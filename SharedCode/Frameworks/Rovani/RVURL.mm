#import <Foundation/Foundation.h>

#include <Rovani/RVURL.h>

#include "Platform/Runtime/RVClassType.h"

RVURL::RVURL() : RVObject() {}
RVURL::RVURL(const RVURL& other) : RVObject(other) {}
RVURL::RVURL(RVId obj) : RVObject(obj) {}
RVURL::RVURL(const RVString& text) : RVObject() { operator=(text); }
RVURL::RVURL(const RVURL& base, const RVString& relative)
    : RVObject(static_cast<RVId>([NSURL URLWithString:relative.Ref() relativeToURL:base.Ref()])) {}
RVURL::~RVURL() {}

RVURL& RVURL::operator=(const RVURL& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVURL& RVURL::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVURL& RVURL::operator=(const RVString& text) {
  RVObject::operator=(static_cast<RVId>([NSURL URLWithString:text.Ref()]));
  return *this;
}

bool RVURL::operator==(const RVURL& other) const { return RVObject::operator==(other); }
bool RVURL::operator!=(const RVURL& other) const { return RVObject::operator!=(other); }

RVURL RVURL::URLFromFilePath(const RVString& path) {
  NSString* expanded = [path.Ref() stringByExpandingTildeInPath];
  return RVURL(static_cast<RVId>([NSURL fileURLWithPath:expanded]));
}

RVString RVURL::ClassType() { return RVString(RVClassTypeText(typeid(RVURL))); }

RVString RVURL::AbsoluteString() const {
  return RVString(static_cast<RVId>([Ref() absoluteString]));
}

RVString RVURL::RelativeString() const {
  return RVString(static_cast<RVId>([Ref() relativeString]));
}

RVString RVURL::LastPathComponent() const {
  return RVString(static_cast<RVId>([Ref() lastPathComponent]));
}

RVString RVURL::PathExtension() const { return RVString(static_cast<RVId>([Ref() pathExtension])); }

RVURL RVURL::AbsoluteURL() const { return RVURL(static_cast<RVId>([Ref() absoluteURL])); }

RVURL RVURL::BaseURL() const { return RVURL(static_cast<RVId>([Ref() baseURL])); }

RVURL RVURL::RelativePath() const { return RVURL(static_cast<RVId>([Ref() relativePath])); }

RVURL RVURL::URLByAppendingPathComponent(const RVString& component) const {
  RVURL result(*this);
  if (component.IsEmpty()) return result;
  result = AbsoluteString().StringByAppendingPathComponent(component);
  return result;
}

RVURL RVURL::URLByAppendingPathExtension(const RVString& extension) const {
  RVURL result(*this);
  if (extension.IsEmpty()) return result;
  result = AbsoluteString().StringByAppendingPathExtension(extension);
  return result;
}

RVURL RVURL::URLByDeletingLastPathComponent() const {
  RVURL result;
  result = AbsoluteString().StringByDeletingLastPathComponent();
  return result;
}

RVURL RVURL::URLByDeletingPathExtension() const {
  RVURL result;
  result = result.AbsoluteString().StringByDeletingPathExtension();
  return result;
}
