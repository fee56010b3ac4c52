#import <Foundation/Foundation.h>

#include <Rovani/RVArray.h>
#include <Rovani/RVDictionary.h>
#include <Rovani/RVError.h>

#include "Platform/Runtime/RVClassType.h"

RVError::RVError() : RVObject() {}
RVError::RVError(const RVError& other) : RVObject(other) {}
RVError::RVError(RVId obj) : RVObject(obj) {}
RVError::RVError(NSError* error) : RVObject(error) {}
RVError::~RVError() {}

RVError& RVError::operator=(const RVError& other) {
  RVObject::operator=(other.Ref());
  return *this;
}

RVError& RVError::operator=(RVId obj) {
  RVObject::operator=(obj);
  return *this;
}

RVError& RVError::operator=(NSError* error) {
  RVObject::operator=(error);
  return *this;
}

RVError::operator NSError*() const { return Ref(); }

RVString RVError::ClassType() { return RVString(RVClassTypeText(typeid(RVError))); }

bool RVError::IsError() const { return !IsEmpty(); }

int RVError::Code() const { return static_cast<int>([Ref() code]); }

RVString RVError::Domain() const { return RVString(static_cast<RVId>([Ref() domain])); }

RVDictionary RVError::UserInfo() const { return RVDictionary(static_cast<RVId>([Ref() userInfo])); }

RVObject* RVError::ValueForKey(const RVString& key) const { return UserInfo().ValueForKey(key); }

void RVError::SetValueForKey(const RVObject& value, const RVString& key) {
  UserInfo().SetValueForKey(value, key);
}

RVString RVError::Description() const {
  NSMutableString* text = [NSMutableString stringWithString:@"code = "];
  [text appendString:RVString::StringWithFormat("%d", Code()).Ref()];
  [text appendString:@" Domain = "];
  if (NSString* domain = Domain().Ref()) [text appendString:domain];
  [text appendString:@" UserInfo = "];
  if (NSString* info = UserInfo().Description().Ref()) [text appendString:info];
  return RVString(static_cast<RVId>([NSString stringWithString:text]));
}

RVString RVError::LocalizedDescriptionKey() {
  static const RVString key(NSLocalizedDescriptionKey);
  return key;
}

RVString RVError::LocalizedRecoverySuggestionErrorKey() {
  static const RVString key(NSLocalizedRecoverySuggestionErrorKey);
  return key;
}

RVString RVError::LocalizedRecoveryOptionsErrorKey() {
  static const RVString key(NSLocalizedRecoveryOptionsErrorKey);
  return key;
}

RVError RVError::ErrorWithCodeDescriptionAndDomain(int code, const RVString& description,
                                                   const RVString& domain) {
  return MakeRVError(code, description, RVString(""), domain);
}

RVError MakeRVError(int code, const RVString& domain, const RVDictionary& userInfo) {
  RVError error;
  if (code == 0) return error;  // code 0 means "no error", whatever else is given
  error = static_cast<RVId>([NSError errorWithDomain:domain.Ref()
                                                code:code
                                            userInfo:userInfo.Ref()]);
  return error;
}

namespace {

RVDictionary TextsUserInfo(const RVString& description, const RVString& recoverySuggestion) {
  RVDictionary info;
  info.SetValueForKey(description, RVError::LocalizedDescriptionKey());
  info.SetValueForKey(recoverySuggestion, RVError::LocalizedRecoverySuggestionErrorKey());
  return info;
}

}  // namespace

RVError MakeRVError(int code, const RVString& description, const RVString& recoverySuggestion,
                    const RVDictionary& extraInfo, const RVString& domain) {
  if (code == 0) return RVError();
  RVDictionary info = TextsUserInfo(description, recoverySuggestion);
  if (!extraInfo.IsEmpty()) info.AddDictionary(extraInfo);
  return MakeRVError(code, domain, info);
}

RVError MakeRVError(int code, const RVString& description, const RVString& recoverySuggestion,
                    const RVString& domain) {
  return MakeRVError(code, description, recoverySuggestion, RVDictionary(), domain);
}

RVError MakeRVError(int code, const RVString& description, const RVString& recoverySuggestion,
                    const RVArray& recoveryOptions, const RVString& domain) {
  if (code == 0) return RVError();
  RVDictionary info = TextsUserInfo(description, recoverySuggestion);
  if (!recoveryOptions.IsEmpty())
    info.SetValueForKey(recoveryOptions, RVError::LocalizedRecoveryOptionsErrorKey());
  return MakeRVError(code, domain, info);
}

RVString FilePathToDomain(const RVString& path) {
  NSString* name = [[path.Ref() lastPathComponent] stringByDeletingPathExtension];
  return RVString(static_cast<RVId>([NSString stringWithFormat:@"%@Domain", name]));
}
