/// \file
/// RVJsonDocument, JSON text read exactly into property-list trees, with
/// errors that say where.
#ifndef ROVANI_RVJSONDOCUMENT_H
#define ROVANI_RVJSONDOCUMENT_H

#include <memory>
#include <string>

#include <Rovani/RVDefines.h>
#include <Rovani/RVFormatError.h>
#include <Rovani/RVObject.h>

/// JSON text read into a tree a property list can take, through jsoncpp.
///
/// Unlike RVJsonTranslator, nothing is changed on the way: integers keep
/// every value of 64 bits, signed or unsigned, and an integer beyond 64
/// bits is refused (never made a real); text keeps every character, a
/// leading U+FEFF and U+0000 included; empty arrays and objects are real
/// ones; booleans are the platform's (what a property list reads back);
/// null is NSNull (an empty handle at the root). Comments are allowed.
class RV_EXPORT RVJsonDocument {
 public:
  /// The tree that text holds.
  /// \param text one JSON value of any kind, in UTF-8, with nothing after it
  ///   but white space and comments.
  /// \param error when given, cleared, then on failure the reason, the line
  ///   and column, and for a value that cannot be read exactly (an integer
  ///   beyond 64 bits, text that is not UTF-8) its key path.
  /// \return a new handle for the root, or null when the text was refused.
  static std::unique_ptr<RVObject> Parse(const std::string& text, RVFormatError* error = nullptr);
};

#endif
