// RVJsonTranslator: JSON text to trees of handles and back, through jsoncpp.
//
// Encoding maps, by the node's class type: arrays, dictionaries, numbers
// (reals when made from float or double, otherwise the 32-bit int
// conversion), strings (up to their first NUL) and booleans; anything else
// (NSNull, dates, data, an empty RVObject) becomes null. The text is exactly
// jsoncpp's StyledWriter's.
//
// Parsing maps null to an empty RVObject, integers and reals to RVNumber,
// strings to RVString, booleans to RVBool, arrays to RVArray and objects to
// RVDictionary. Inside an object, null, an empty array and an empty object
// are stored as NSNull, an empty array and an empty dictionary; inside an
// array they are nothing, which the platform's array refuses by raising.
// Integers outside the 32-bit range keep their full 64-bit value.
//
// The interface names no jsoncpp type: jsoncpp values pass as void*.
#ifndef ROVANI_RVJSONTRANSLATOR_H
#define ROVANI_RVJSONTRANSLATOR_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVError.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVString.h>

class RV_EXPORT RVJsonTranslator {
 public:
  RVJsonTranslator();
  virtual ~RVJsonTranslator();

  RVString Encode(const RVObject& root) const;
  // Writes Encode's text (not atomically); an error with code 2 and the
  // description "Failed to create file" when the file cannot be written.
  RVError EncodeToFilePath(const RVObject& root, const RVString& path);

  // A new handle tree the caller deletes, or null (and the log line
  // "RVJsonTranslator::Parse: Failed to parse") when the text does not parse.
  RVObject* Parse(const RVString& text);
  // Parse of the file's text; an empty path or an unreadable file parses as
  // empty text.
  RVObject* ParseFromFilePath(const RVString& path);

  // A new Json::Value for node and its subtree, returned untyped; the caller
  // deletes it as a Json::Value*.
  void* EncodeNext(const RVObject& node) const;
  // A new handle for a Json::Value (passed untyped) and its subtree.
  RVObject* ParseNext(void* value);
};

#endif
