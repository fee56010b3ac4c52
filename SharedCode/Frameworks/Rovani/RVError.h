// RVError: a handle on an NSError (code, domain, user info). An empty
// RVError means there was no error; code 0 never makes one.
#ifndef ROVANI_RVERROR_H
#define ROVANI_RVERROR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVArray;
class RVDictionary;

class RV_EXPORT RVError : public RVObject {
 public:
  RVError();
  RVError(const RVError& other);
  RVError(RVId obj);
  RVError(NSError* error);
  ~RVError() override;

  RVError& operator=(const RVError& other);
  RVError& operator=(RVId obj);
  RVError& operator=(NSError* error);
  operator NSError*() const;
  static RVString ClassType();

  // True exactly when an error is held.
  bool IsError() const;
  int Code() const;
  RVString Domain() const;
  // The error's own dictionary, not a copy.
  RVDictionary UserInfo() const;
  // A heap handle the caller deletes, or null when the key is absent.
  RVObject* ValueForKey(const RVString& key) const;
  // Works on a temporary handle of the error's dictionary, which copies on
  // change: the error itself keeps the user info it was made with.
  void SetValueForKey(const RVObject& value, const RVString& key);
  // "code = <code> Domain = <domain> UserInfo = <user info>"; an absent
  // domain or user info contributes nothing.
  RVString Description() const override;

  // The platform's user-info keys.
  static RVString LocalizedDescriptionKey();
  static RVString LocalizedRecoverySuggestionErrorKey();
  static RVString LocalizedRecoveryOptionsErrorKey();

  // The four-text MakeRVError with an empty recovery suggestion.
  static RVError ErrorWithCodeDescriptionAndDomain(int code, const RVString& description,
                                                   const RVString& domain);
};

// Every overload answers the empty error for code 0.
RV_EXPORT RVError MakeRVError(int code, const RVString& domain, const RVDictionary& userInfo);
// Description and recovery suggestion under the localized keys; the entries
// of extraInfo are added last and win over them.
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVDictionary& extraInfo,
                              const RVString& domain);
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVString& domain);
// recoveryOptions go under the recovery-options key unless the array is empty.
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVArray& recoveryOptions,
                              const RVString& domain);

// "<last path component without extension>Domain": the library files its own
// errors under the domain of the source file that reports them.
RV_EXPORT RVString FilePathToDomain(const RVString& path);

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>
#include <Rovani/RVDictionary.h>

#endif
