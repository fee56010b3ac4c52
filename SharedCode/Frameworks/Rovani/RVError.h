/// \file
/// RVError and the functions that make errors.
#ifndef ROVANI_RVERROR_H
#define ROVANI_RVERROR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RVArray;
class RVDictionary;

/// A handle on an NSError (code, domain, user info). An empty
/// RVError means there was no error; code 0 never makes one.
///
/// Members that can fail in a way the caller must see answer an RVError.
/// The library files its own errors under `<file>Domain` (see
/// FilePathToDomain()): RVStringDomain code 1, RVJsonTranslatorDomain code 2.
class RV_EXPORT RVError : public RVObject {
 public:
  /// The empty error: no error.
  RVError();
  /// Shares the other's error.
  RVError(const RVError& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVError(RVId obj);
  RVError(NSError* error);
  ///@}
  /// Releases the error.
  ~RVError() override;

  /// Shares the other's error.
  RVError& operator=(const RVError& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVError& operator=(RVId obj);
  RVError& operator=(NSError* error);
  ///@}
  /// The held NSError, not retained; nil for no error.
  operator NSError*() const;
  /// The class type, "RVError".
  static RVString ClassType();

  /// True exactly when an error is held.
  /// \return the negation of IsEmpty().
  bool IsError() const;
  /// The error's code.
  /// \return the code; 0 for no error.
  int Code() const;
  /// The error's domain.
  /// \return the domain; empty for no error.
  RVString Domain() const;
  /// The error's own dictionary, not a copy.
  /// \return the user info; empty for no error.
  RVDictionary UserInfo() const;
  /// A heap handle the caller deletes, or null when the key is absent.
  /// \param key the user-info key looked up.
  /// \return a new handle, or null.
  RVObject* ValueForKey(const RVString& key) const;
  /// Works on a temporary handle of the error's dictionary, which copies on
  /// change: the error itself keeps the user info it was made with.
  /// \note So this never changes the error: kept by design.
  /// \param value the value.
  /// \param key the user-info key.
  void SetValueForKey(const RVObject& value, const RVString& key);
  /// `code = <code> Domain = <domain> UserInfo = <user info>`; an absent
  /// domain or user info contributes nothing.
  RVString Description() const override;

  /// The platform's user-info key for the description.
  static RVString LocalizedDescriptionKey();
  /// The platform's user-info key for the recovery suggestion.
  static RVString LocalizedRecoverySuggestionErrorKey();
  /// The platform's user-info key for the recovery options.
  static RVString LocalizedRecoveryOptionsErrorKey();

  /// The four-text MakeRVError with an empty recovery suggestion.
  /// \param code the code; 0 gives no error.
  /// \param description the text under LocalizedDescriptionKey().
  /// \param domain the domain.
  /// \return the error, or the empty error for code 0.
  static RVError ErrorWithCodeDescriptionAndDomain(int code, const RVString& description,
                                                   const RVString& domain);
};

/// An error with the given user info. Every overload answers the empty
/// error for code 0.
/// \param code the code; 0 gives no error.
/// \param domain the domain.
/// \param userInfo the user info, as it is.
/// \return the error, or the empty error for code 0.
RV_EXPORT RVError MakeRVError(int code, const RVString& domain, const RVDictionary& userInfo);
/// Description and recovery suggestion under the localized keys; the entries
/// of extraInfo are added last and win over them.
/// \param code the code; 0 gives no error.
/// \param description the text under RVError::LocalizedDescriptionKey().
/// \param recoverySuggestion the text under
///   RVError::LocalizedRecoverySuggestionErrorKey().
/// \param extraInfo further user-info entries; may be empty.
/// \param domain the domain.
/// \return the error, or the empty error for code 0.
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVDictionary& extraInfo,
                              const RVString& domain);
/// Description and recovery suggestion under the localized keys.
/// \param code the code; 0 gives no error.
/// \param description the text under RVError::LocalizedDescriptionKey().
/// \param recoverySuggestion the text under
///   RVError::LocalizedRecoverySuggestionErrorKey().
/// \param domain the domain.
/// \return the error, or the empty error for code 0.
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVString& domain);
/// Description, recovery suggestion and options under the localized keys.
/// recoveryOptions go under the recovery-options key unless the array is empty.
/// \param code the code; 0 gives no error.
/// \param description the text under RVError::LocalizedDescriptionKey().
/// \param recoverySuggestion the text under
///   RVError::LocalizedRecoverySuggestionErrorKey().
/// \param recoveryOptions the texts under
///   RVError::LocalizedRecoveryOptionsErrorKey(); may be empty.
/// \param domain the domain.
/// \return the error, or the empty error for code 0.
RV_EXPORT RVError MakeRVError(int code, const RVString& description,
                              const RVString& recoverySuggestion, const RVArray& recoveryOptions,
                              const RVString& domain);

/// `<last path component without extension>Domain`: the library files its own
/// errors under the domain of the source file that reports them.
/// \param path a file path, such as "src/RVString.mm".
/// \return the domain, such as "RVStringDomain".
RV_EXPORT RVString FilePathToDomain(const RVString& path);

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>
#include <Rovani/RVDictionary.h>

#endif
