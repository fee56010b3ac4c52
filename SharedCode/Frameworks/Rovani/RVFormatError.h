/// \file
/// RVFormatError, why a document could not be read or written, and where.
#ifndef ROVANI_RVFORMATERROR_H
#define ROVANI_RVFORMATERROR_H

#include <cstddef>
#include <string>

#include <Rovani/RVDefines.h>

/// The document formats the library reads and writes.
enum class RVDocumentFormat {
  kNone,                  ///< no format: nothing was recognised
  kXMLPropertyList,       ///< an XML property list
  kBinaryPropertyList,    ///< a binary property list ("bplist00")
  kOpenStepPropertyList,  ///< an OpenStep text property list or strings table
  kJson                   ///< JSON text
};

/// Why a document could not be read or written, and where.
///
/// Passed by pointer to a reader or writer (RVPropertyList::Read,
/// RVPropertyList::Write, RVJsonDocument::Parse), which clears it and, when
/// it fails, fills it:
/// - text formats (XML, OpenStep, JSON) give the 1-based line and column of
///   the fault (columns count characters, not bytes);
/// - binary property lists give the byte offset of the fault;
/// - a value a writer refuses (or a JSON value no property list can hold)
///   is named by its key path: keys joined by ".", a "." or "\" inside a key
///   written "\." and "\\", array elements by their decimal index
///   ("servers.2.name"); the root's key path is empty.
class RV_EXPORT RVFormatError {
 public:
  /// Why, in plain English, without the place ("expected a value"); empty
  /// when there was no error.
  std::string message;
  /// 1-based line of the fault in text; 0 when it has none.
  size_t line = 0;
  /// 1-based column of the fault in text; 0 when it has none.
  size_t column = 0;
  /// Byte offset of the fault in a binary property list; -1 when it has none.
  long long byteOffset = -1;
  /// The key path of the value at fault; empty for the root or no value.
  std::string keyPath;
  /// The format the document was taken for (reading) or written in.
  RVDocumentFormat format = RVDocumentFormat::kNone;

  /// No error. Copies are plain value copies.
  ///@{
  RVFormatError();
  RVFormatError(const RVFormatError& other);
  ~RVFormatError();
  RVFormatError& operator=(const RVFormatError& other);
  ///@}

  /// Whether an error was recorded (the message is not empty).
  bool IsError() const;
  /// The error on one line, place first: "LINE:COLUMN: message",
  /// "byte N: message" or "KEYPATH: message" (a place and a key path both:
  /// "LINE:COLUMN: KEYPATH: message"); empty when there was no error.
  std::string Description() const;
  /// Back to no error.
  void Clear();
};

#endif
