#import <Foundation/Foundation.h>

#include <Rovani/RVBundle.h>
#include <Rovani/RVUtilities.h>

#include "Platform/Runtime/RVClassType.h"

namespace {

RVId BundleId(const NSBundle* bundle) { return const_cast<NSBundle*>(bundle); }

}  // namespace

RVBundle::RVBundle() : RVObject() {}
RVBundle::RVBundle(const NSBundle* bundle) : RVObject(BundleId(bundle)) {}
RVBundle::RVBundle(const RVBundle& other) : RVObject(other) {}
RVBundle::~RVBundle() {}

RVBundle& RVBundle::operator=(const RVBundle& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVBundle& RVBundle::operator=(const NSBundle* bundle) {
  RVObject::operator=(BundleId(bundle));
  return *this;
}

RVBundle& RVBundle::operator=(RVId obj) {
  DebugLog("RVBundle RVId copy operator does not work; recode if you need this!");
  RVObject::operator=(obj);
  return *this;
}

RVBundle& RVBundle::MainBundle() {
  static RVBundle mainBundle(static_cast<const NSBundle*>([NSBundle mainBundle]));
  return mainBundle;
}

RVString RVBundle::DefaultStringsTableName() {
  static const RVString name("localizable.strings");
  return name;
}

RVString RVBundle::ClassType() { return RVString(RVClassTypeText(typeid(RVBundle))); }

RVString RVBundle::BundleIdentifier() const {
  return RVString(static_cast<RVId>([Ref() bundleIdentifier]));
}

RVString RVBundle::ExecutablePath() const {
  return RVString(static_cast<RVId>([Ref() executablePath]));
}

RVString RVBundle::BundlePath() const { return RVString(static_cast<RVId>([Ref() bundlePath])); }

RVString RVBundle::ResourcePath() const {
  return RVString(static_cast<RVId>([Ref() resourcePath]));
}

RVString RVBundle::PathForResourceOfType(RVString name, RVString type) {
  return RVString(static_cast<RVId>([Ref() pathForResource:name.Ref() ofType:type.Ref()]));
}

RVString RVBundle::LocalizedStringForKeyWithDefaultValueInTableNamed(const RVString& key,
                                                                     const RVString& defaultValue,
                                                                     const RVString& table) const {
  return RVString(static_cast<RVId>([Ref() localizedStringForKey:key.Ref()
                                                           value:defaultValue.Ref()
                                                           table:table.Ref()]));
}

RVString RVBundle::LocalizedStringForKey(const RVString& key) const {
  return LocalizedStringForKeyWithDefaultValueInTableNamed(key, RVString(""), RVString(""));
}

RVString RVBundle::LocalizedStringForKeyInTableNamed(const RVString& key,
                                                     const RVString& table) const {
  return LocalizedStringForKeyWithDefaultValueInTableNamed(key, RVString(""), table);
}

RVString RVBundle::LocalizedStringForKeyWithDefaultValue(const RVString& key,
                                                         const RVString& defaultValue) const {
  return LocalizedStringForKeyWithDefaultValueInTableNamed(key, defaultValue, RVString(""));
}
