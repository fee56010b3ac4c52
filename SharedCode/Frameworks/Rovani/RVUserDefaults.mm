#import <Foundation/Foundation.h>

#include <Rovani/RVBool.h>
#include <Rovani/RVBundle.h>
#include <Rovani/RVUserDefaults.h>

#include "Platform/Runtime/RVClassType.h"
#include "Platform/Preferences/RVPreferences.h"

namespace {

// The main bundle's identifier, asked for once per object; empty when the
// bundle has none, which the preferences layer reads as the process's own
// application domain.
RVString MainBundleIdentifier() { return RVBundle::MainBundle().BundleIdentifier(); }

}  // namespace

RVUserDefaults::RVUserDefaults()
    : RVObject(), applicationID_(MainBundleIdentifier()), allUsers_(false) {}

RVUserDefaults::RVUserDefaults(bool allUsers)
    : RVObject(), applicationID_(MainBundleIdentifier()), allUsers_(allUsers) {}

RVUserDefaults::RVUserDefaults(const RVString& applicationID, bool allUsers)
    : RVObject(), applicationID_(applicationID), allUsers_(allUsers) {}

RVUserDefaults::~RVUserDefaults() {}

RVUserDefaults RVUserDefaults::StandardUserDefaults() { return RVUserDefaults(); }

RVUserDefaults RVUserDefaults::StandardAllUsersDefaults() { return RVUserDefaults(true); }

RVString RVUserDefaults::ClassType() {
  return RVString(RVClassTypeText(typeid(RVUserDefaults)));
}

bool RVUserDefaults::AccessingAllUsersDefaults() const { return allUsers_; }

RVObject* RVUserDefaults::ObjectForKey(RVString key) const {
  id value = (id)CFPreferencesCopyAppValue((CFStringRef)key.Ref(),
                                           (CFStringRef)applicationID_.Ref());
  if (value == nil) return nullptr;
  RVObject* made = RVObject::Create(value);
  [value release];
  return made;
}

RVDictionary RVUserDefaults::DictionaryRepresentation() const {
  NSDictionary* domain = (NSDictionary*)RVPreferencesCopyDomain((CFStringRef)applicationID_.Ref());
  RVDictionary result(domain);
  [domain release];
  return result;
}

namespace {

// The value's handle when it is of class T, deleted once read by read;
// otherwise fallback, and a handle of another class is left undeleted.
template <typename T, typename Result, typename Read>
Result Typed(RVObject* found, Result fallback, Read read) {
  T* typed = dynamic_cast<T*>(found);
  if (typed == nullptr) return fallback;
  Result result = read(*typed);
  delete found;
  return result;
}

}  // namespace

RVArray RVUserDefaults::ArrayForKey(RVString key) const {
  return Typed<RVArray>(ObjectForKey(key), RVArray(), [](RVArray& a) { return RVArray(a); });
}

RVArray RVUserDefaults::StringArrayForKey(RVString key) const { return ArrayForKey(key); }

RVDictionary RVUserDefaults::DictionaryForKey(RVString key) const {
  return Typed<RVDictionary>(ObjectForKey(key), RVDictionary(),
                             [](RVDictionary& d) { return RVDictionary(d); });
}

RVData RVUserDefaults::DataForKey(RVString key) const {
  return Typed<RVData>(ObjectForKey(key), RVData(), [](RVData& d) {
    RVData result;
    result = RVData(d);
    return result;
  });
}

RVDate RVUserDefaults::DateForKey(RVString key) const {
  return Typed<RVDate>(ObjectForKey(key), RVDate(), [](RVDate& d) { return RVDate(d); });
}

RVString RVUserDefaults::StringForKey(RVString key) const {
  return Typed<RVString>(ObjectForKey(key), RVString(), [](RVString& s) { return RVString(s); });
}

RVNumber RVUserDefaults::NumberForKey(RVString key) const {
  return Typed<RVNumber>(ObjectForKey(key), RVNumber(), [](RVNumber& n) { return RVNumber(n); });
}

int RVUserDefaults::IntegerForKey(RVString key) const {
  return Typed<RVNumber>(ObjectForKey(key), 0, [](RVNumber& n) { return static_cast<int>(n); });
}

float RVUserDefaults::FloatForKey(RVString key) const {
  return Typed<RVNumber>(ObjectForKey(key), 0.0f,
                         [](RVNumber& n) { return static_cast<float>(n); });
}

double RVUserDefaults::DoubleForKey(RVString key) const {
  return Typed<RVNumber>(ObjectForKey(key), 0.0,
                         [](RVNumber& n) { return static_cast<double>(n); });
}

bool RVUserDefaults::BoolForKey(RVString key) const {
  RVObject* found = ObjectForKey(key);
  if (found == nullptr) return false;
  bool result = false;
  if (RVBool* boolean = dynamic_cast<RVBool*>(found)) {
    result = static_cast<bool>(*boolean);
  } else if (RVNumber* number = dynamic_cast<RVNumber*>(found)) {
    result = static_cast<bool>(*number);
  }
  delete found;
  return result;
}

void RVUserDefaults::SetObjectForKey(const RVObject& value, RVString key) {
  if (allUsers_) {
    CFPreferencesSetValue((CFStringRef)key.Ref(), (CFPropertyListRef)value.Ref(),
                          (CFStringRef)applicationID_.Ref(), kCFPreferencesAnyUser,
                          kCFPreferencesCurrentHost);
  } else {
    CFPreferencesSetAppValue((CFStringRef)key.Ref(), (CFPropertyListRef)value.Ref(),
                             (CFStringRef)applicationID_.Ref());
  }
}

void RVUserDefaults::SetIntegerForKey(int value, RVString key) {
  SetObjectForKey(RVNumber(value), key);
}

void RVUserDefaults::SetFloatForKey(float value, RVString key) {
  SetObjectForKey(RVNumber(value), key);
}

void RVUserDefaults::SetDoubleForKey(double value, RVString key) {
  SetObjectForKey(RVNumber(value), key);
}

void RVUserDefaults::SetBoolForKey(bool value, RVString key) {
  SetObjectForKey(RVNumber(value), key);
}

bool RVUserDefaults::RemoveObjectForKey(RVString key) const {
  CFPreferencesSetValue((CFStringRef)key.Ref(), nullptr, (CFStringRef)applicationID_.Ref(),
                        kCFPreferencesAnyUser, kCFPreferencesCurrentHost);
  return true;
}

bool RVUserDefaults::RemoveUserDefaults() const { return false; }

bool RVUserDefaults::Synchronize() const {
  return CFPreferencesSynchronize((CFStringRef)applicationID_.Ref(), kCFPreferencesAnyUser,
                                  kCFPreferencesCurrentHost) != 0;
}
