/// \file
/// RVPropertyList, property lists in every format read and written, with
/// errors that say where.
#ifndef ROVANI_RVPROPERTYLIST_H
#define ROVANI_RVPROPERTYLIST_H

#include <memory>
#include <string>

#include <Rovani/RVDefines.h>
#include <Rovani/RVFormatError.h>
#include <Rovani/RVObject.h>

/// Property lists in and out, through the library's own readers and writers.
///
/// Reading tells the format apart by content: "bplist00" starts a binary
/// list, "<?", "<!" or "<plist" (after an optional byte-order mark and white
/// space) an XML list, anything else is OpenStep text. Integers keep every
/// value of 64 bits, signed or unsigned; text keeps every character.
///
/// \code
/// RVFormatError error;
/// std::unique_ptr<RVObject> root = RVPropertyList::Read(bytes, &error);
/// if (root == nullptr) {
///   std::cerr << "settings.plist:" << error.Description() << "\n";  // 3:14: expected <key>
/// }
/// \endcode
class RV_EXPORT RVPropertyList {
 public:
  /// What a handle of a property-list tree holds.
  enum class Kind {
    kNull,             ///< an empty handle or NSNull (JSON's null)
    kString,           ///< text
    kInteger,          ///< an integer that fits 64 bits signed (read it as long)
    kUnsignedInteger,  ///< an integer above 2^63-1 (read it as unsigned long)
    kReal,             ///< a real (read it as double)
    kBoolean,          ///< the platform's or the library's boolean
    kDate,             ///< a date
    kData,             ///< bytes
    kArray,            ///< an array
    kDictionary,       ///< a dictionary
    kOther             ///< anything no property list holds
  };

  /// The tree that bytes hold, in any of the three formats.
  /// \param bytes the whole document.
  /// \param error when given, cleared, then on failure the reason and the
  ///   place (line and column for text, byte offset for binary); its format
  ///   says which format the bytes were taken for.
  /// \return a new handle for the root (any kind of value), or null when the
  ///   bytes are no property list the library reads.
  static std::unique_ptr<RVObject> Read(const std::string& bytes, RVFormatError* error = nullptr);

  /// The bytes of root as a property list, exactly: what has no exact form
  /// in the format (null, text XML cannot hold, dates outside the years 1
  /// to 9999, containers nested deeper than 256 levels) is refused.
  /// \param root the tree written.
  /// \param format RVDocumentFormat::kXMLPropertyList or kBinaryPropertyList.
  /// \param error when given, cleared, then on refusal the reason and the
  ///   refused value's key path.
  /// \return the document, or empty text when it was refused.
  static std::string Write(const RVObject& root, RVDocumentFormat format,
                           RVFormatError* error = nullptr);

  /// What a handle holds, for walking a tree.
  static Kind KindOf(const RVObject& value);
};

#endif
