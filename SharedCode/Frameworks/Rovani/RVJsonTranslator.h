/// \file
/// RVJsonTranslator, JSON text to trees of handles and back.
#ifndef ROVANI_RVJSONTRANSLATOR_H
#define ROVANI_RVJSONTRANSLATOR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVError.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

/// JSON text to trees of handles and back, through jsoncpp.
///
/// Encoding maps, by the node's class type: arrays, dictionaries, numbers
/// (reals when made from float or double, otherwise the 32-bit int
/// conversion), strings (up to their first NUL) and booleans; anything else
/// (NSNull, dates, data, an empty RVObject) becomes null. The text is exactly
/// jsoncpp's StyledWriter's.
///
/// Parsing maps null to an empty RVObject, integers and reals to RVNumber,
/// strings to RVString, booleans to RVBool, arrays to RVArray and objects to
/// RVDictionary. Inside an object, null, an empty array and an empty object
/// are stored as NSNull, an empty array and an empty dictionary; inside an
/// array they are nothing, which the platform's array refuses by raising.
/// Integers outside the 32-bit range keep their full 64-bit value.
///
/// The interface names no jsoncpp type: jsoncpp values pass as void*.
///
/// \warning Kept by design: every non-real number is written through a
///   32-bit `int` (unsigned values above 2147483647 and 64-bit values come
///   out as that conversion gives them), and a dictionary key that is the
///   empty string ends the walk of its dictionary, so it and the keys after
///   it are left out. A `null`, `[]` or `{}` inside a JSON array raises an
///   NSException from the platform's array, which reaches the caller.
class RV_EXPORT RVJsonTranslator {
 public:
  /// A translator; it has no state.
  RVJsonTranslator();
  /// Nothing to release.
  virtual ~RVJsonTranslator();

  /// The tree as JSON text.
  /// \param root the root handle, usually a dictionary or an array.
  /// \return jsoncpp's styled text.
  RVString Encode(const RVObject& root) const;
  /// Writes Encode's text (not atomically); an error with code 2 and the
  /// description "Failed to create file" when the file cannot be written.
  /// The error's domain is "RVJsonTranslatorDomain"; nothing is logged.
  /// \return an empty error on success.
  RVError EncodeToFilePath(const RVObject& root, const RVString& path);

  /// A new handle tree the caller deletes, or null (and the log line
  /// "RVJsonTranslator::Parse: Failed to parse") when the text does not parse.
  /// \param text the JSON text; empty text does not parse.
  /// \return the root handle, or null.
  RVObject* Parse(const RVString& text);
  /// Parse of the file's text; an empty path or an unreadable file parses as
  /// empty text.
  /// \return the root handle the caller deletes, or null (logged).
  RVObject* ParseFromFilePath(const RVString& path);

  /// A new Json::Value for node and its subtree, returned untyped; the caller
  /// deletes it as a Json::Value*.
  /// \return a new `Json::Value*`, as `void*`.
  void* EncodeNext(const RVObject& node) const;
  /// A new handle for a Json::Value (passed untyped) and its subtree.
  /// A value of a type not handled gives an empty RVObject and the log line
  /// "RVJsonTranslator::ParseNext: type not handled".
  /// \param value a `const Json::Value*`, as `void*`.
  /// \return a new handle the caller deletes.
  RVObject* ParseNext(void* value);
};

#endif
