/// \file
/// RVString, the library's text value, with its concatenation operators, the
/// string-encoding codes and the shared string constants.
#ifndef ROVANI_RVSTRING_H
#define ROVANI_RVSTRING_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVRange.h>

/// The library's own string-encoding codes, taken by RVString and RVData.
/// Any other code is logged as "Unhandled string encoding" and treated as
/// UTF-8.
enum : unsigned int {
  kRVStringEncodingUTF8 = 0,     ///< UTF-8.
  kRVStringEncodingUnicode = 1,  ///< UTF-16 as the platform writes it (little-endian, with a byte-order mark).
  kRVStringEncodingMacOSRoman = 2,     ///< Mac OS Roman.
  kRVStringEncodingWindowsLatin1 = 3,  ///< Windows Latin-1, code page 1252.
  kRVStringEncodingASCII = 4,          ///< ASCII.
};

/// The library's text value: a handle on an immutable NSString.
///
/// Strings are the currency of every other handle: keys, paths, class
/// types, formats and messages are all RVString. Copies share the one
/// immutable string.
///
/// \note Two kinds of empty string exist, both IsEmpty(): a default string
///   holds the shared empty literal, while a string made from a null C
///   string holds nil. They are not equal to each other (a nil left side is
///   never equal to anything).
class RV_EXPORT RVString : public RVObject {
 public:
  /// Holds the shared empty literal (not nil).
  RVString();
  /// Shares the other's string.
  RVString(const RVString& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVString(RVId obj);
  RVString(NSString* str);
  ///@}
  /// A null or non-string reference gives the default (empty literal) string.
  /// \param str a Core Foundation string reference (retained), or null.
  RVString(CFStringRef str);
  /// A null pointer leaves the string nil; otherwise decoded as UTF-8.
  /// \param str NUL-terminated UTF-8 text, or null.
  RVString(const char* str);
  /// As RVString(const char*).
  /// \param str NUL-terminated UTF-8 text, or null.
  RVString(const unsigned char* str);
  /// Read as a NUL-terminated array of 16-bit Unicode units (<tt>\%S</tt>), whatever
  /// the width of wchar_t; no null check.
  /// \warning On Linux wchar_t is 32 bits wide: pass `char16_t` text cast to
  ///   `const wchar_t*`. A null pointer is not allowed.
  /// \param str NUL-terminated UTF-16 text.
  RVString(const wchar_t* str);
  /// UTF-8 bytes; when the last byte is zero, only up to the first zero byte.
  /// Without a final zero byte the whole buffer is decoded, embedded zero
  /// bytes included.
  /// \param data UTF-8 bytes.
  RVString(const RVData& data);
  /// The other's object when it is a string, else its Description().
  /// \param other any handle.
  RVString(const RVObject& other);
  /// Releases the string.
  ~RVString() override;

  /// Shares the other's string.
  RVString& operator=(const RVString& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVString& operator=(RVId obj);
  RVString& operator=(NSString* str);
  ///@}
  /// A null or non-string reference gives the default (empty literal) string.
  /// \param str a Core Foundation string reference, or null.
  RVString& operator=(CFStringRef str);
  /// A null pointer makes the string nil; otherwise decoded as UTF-8.
  /// \param str NUL-terminated UTF-8 text, or null.
  ///@{
  RVString& operator=(const char* str);
  RVString& operator=(const unsigned char* str);
  ///@}
  /// Read as NUL-terminated 16-bit Unicode units, as RVString(const wchar_t*).
  /// \param str NUL-terminated UTF-16 text, not null.
  RVString& operator=(const wchar_t* str);
  /// UTF-8 bytes, as RVString(const RVData&).
  /// \param data UTF-8 bytes.
  RVString& operator=(const RVData& data);
  /// The other's object when it is a string, else its Description().
  /// \param other any handle.
  RVString& operator=(const RVObject& other);

  /// The held NSString, not retained; nil when nil.
  operator NSString*() const;
  /// The held string, not retained; null when nil.
  operator CFStringRef() const;
  /// The class type, "RVString".
  static RVString ClassType();

  // Queries. A nil string answers 0, false or the empty result.
  /// The number of UTF-16 units.
  /// \return the length; 0 for a nil string.
  unsigned int Length() const;
  /// Whether there is no text.
  /// \return true for a nil string and for a string of length 0.
  bool IsEmpty() const override;
  /// The whole string as a range.
  /// \return (0, Length()).
  RVRange Range() const;
  /// Compares with Foundation's ordering.
  /// \return -1, 0 or 1.
  int Compare(RVString other) const;
  /// Compares with Foundation's string-compare option bits.
  /// \param other the string to compare with.
  /// \param options Foundation's `NSStringCompareOptions` bits, passed on
  ///   as they are (1 is case-insensitive).
  /// \return -1, 0 or 1.
  int CompareWithOptions(RVString other, unsigned int options) const;
  /// Compares ignoring case.
  /// \return -1, 0 or 1.
  int CaseInsensitiveCompare(RVString other) const;
  /// Finds the first occurrence of \p str.
  /// \return its range; when it is absent, the platform's "not found" range
  ///   (length 0) cut to 32 bits (see RVRange::operator _NSRange()).
  RVRange RangeOfString(const RVString& str) const;
  /// Finds \p str with Foundation's search options.
  /// \param str the text to find.
  /// \param options Foundation's `NSStringCompareOptions` bits.
  /// \return its range, or a range of length 0 when absent.
  RVRange RangeOfStringWithOptions(const RVString& str, unsigned int options) const;
  /// Finds \p str inside \p range with Foundation's search options.
  /// \param str the text to find.
  /// \param options Foundation's `NSStringCompareOptions` bits.
  /// \param range the part of this string searched; a range beyond the end
  ///   raises the platform's range exception.
  /// \return its range, or a range of length 0 when absent.
  RVRange RangeOfStringWithOptionsInRange(const RVString& str, unsigned int options,
                                          const RVRange& range) const;
  /// Splits at every occurrence of \p separator.
  /// \return the components, strings; the whole string alone when the
  ///   separator does not occur.
  RVArray ComponentsSeparatedByString(const RVString& separator) const;
  /// Whether the string starts with \p prefix.
  /// \return whether the string starts with \p prefix.
  bool HasPrefix(const RVString& prefix) const;
  /// Whether the string ends with \p suffix.
  /// \return whether the string ends with \p suffix.
  bool HasSuffix(const RVString& suffix) const;
  /// The text read as a number by Foundation's rules.
  /// \return the number; 0 when the text does not start with one.
  double DoubleValue() const;
  /// The text read as a number by Foundation's rules.
  /// \return the number; 0 when the text does not start with one.
  float FloatValue() const;
  /// The text read as an integer by Foundation's rules.
  /// \return the integer; 0 when the text does not start with one.
  int IntValue() const;
  /// The text read as a truth by Foundation's rules ("YES", "true", a
  /// non-zero number).
  /// \return the truth; false for a nil string.
  bool BoolValue() const;

  /// Case-sensitive equality; a nil left side is never equal.
  /// \param other the text to compare with (converted to a string first).
  /// \return whether both hold the same text.
  ///@{
  bool IsEqualToString(const RVString& other) const;
  bool IsEqualToString(RVId other) const;
  bool IsEqualToString(const char* other) const;
  bool IsEqualToString(const unsigned char* other) const;
  bool IsEqualToString(const wchar_t* other) const;
  ///@}
  /// Case-sensitive equality, as IsEqualToString(); a nil left side is never
  /// equal, so a nil string differs even from the empty string.
  /// \param other the text to compare with (converted to a string first).
  /// \return whether both hold the same text.
  ///@{
  bool operator==(const RVString& other) const;
  bool operator==(RVId other) const;
  bool operator==(NSString* other) const;
  bool operator==(const char* other) const;
  bool operator==(const unsigned char* other) const;
  bool operator==(const wchar_t* other) const;
  ///@}
  /// The exact negation of the matching operator==.
  /// \param other the text to compare with (converted to a string first).
  /// \return whether the texts differ; true when this string is nil.
  ///@{
  bool operator!=(const RVString& other) const;
  bool operator!=(RVId other) const;
  bool operator!=(NSString* other) const;
  bool operator!=(const char* other) const;
  bool operator!=(const unsigned char* other) const;
  bool operator!=(const wchar_t* other) const;
  ///@}

  // Substrings and transformations. Platform exceptions pass through,
  // except in SubstringWithRange: a range exception is thrown as a heap
  // RVError* (code 1, domain RVStringDomain), any other platform exception
  // as a heap RVString* holding its description. The catcher deletes it.
  /// The text before \p index.
  /// \note An index beyond the end raises the platform's range exception,
  ///   which reaches the caller as it is.
  /// \param index the first position left out.
  /// \return the first \p index units.
  RVString SubstringToIndex(unsigned int index) const;
  /// The text from \p index on.
  /// \note An index beyond the end raises the platform's range exception,
  ///   which reaches the caller as it is.
  /// \param index the first position kept.
  /// \return the units from \p index to the end.
  RVString SubstringFromIndex(unsigned int index) const;
  /// The text in \p range. The only member of the library that throws.
  ///
  /// An empty string or an empty range gives the default (empty) string
  /// without asking the platform.
  /// \exception RVError* for a range beyond the end: a heap error of code 1
  ///   in the domain "RVStringDomain", described as
  ///   `Exception <name> - <description>` of the platform's exception.
  /// \exception RVString* for any other platform exception: a heap string
  ///   holding its description.
  /// \warning The catcher owns the thrown pointer and deletes it. Catch it
  ///   in plain C++ code: with the GNU Objective-C runtime a C++ `catch`
  ///   clause in an Objective-C++ file never matches.
  /// \param range the units wanted.
  /// \return the substring.
  RVString SubstringWithRange(RVRange range) const;
  /// Literal, case-sensitive, non-overlapping replace-all; nothing is
  /// replaced when the replacement contains the target.
  ///
  /// Matching runs left to right and inserted text is never searched again.
  /// An empty target changes nothing.
  /// \param target the text replaced.
  /// \param replacement the text put in its place.
  /// \return the new text; a nil string gives nil.
  RVString StringByReplacingOccurrencesOfStringWithString(const RVString& target,
                                                         const RVString& replacement) const;
  /// The path without its last component.
  /// \return the shortened path ("/a/b" gives "/a").
  RVString StringByDeletingLastPathComponent() const;
  /// The path without the extension of its last component.
  /// \return the path without ".ext".
  RVString StringByDeletingPathExtension() const;
  /// The last component of the path.
  /// \return the component ("/a/b.txt" gives "b.txt").
  RVString LastPathComponent() const;
  /// The extension of the last path component.
  /// \return the extension without its dot; empty when there is none.
  RVString PathExtension() const;
  /// The path with \p component appended after a "/".
  /// An empty receiver appends to "".
  /// \return the new path; for an empty receiver, the component alone.
  RVString StringByAppendingPathComponent(const RVString& component) const;
  /// The path with "." and \p extension appended.
  /// An empty receiver appends to "".
  /// \param extension the extension added, without its dot.
  /// \return the new path.
  RVString StringByAppendingPathExtension(const RVString& extension) const;
  /// The text with what is not legal in a URL percent-escaped (UTF-8).
  /// \return the escaped text.
  RVString StringByAddingPercentEscapes() const;
  /// Escapes what is not legal in a URL, and escapeCharacters as well.
  /// \param escapeCharacters legal URL characters to escape too.
  /// \return the escaped text (UTF-8 percent escapes).
  RVString StringByAddingPercentEscapesSpecifyingEscapeCharacters(RVString escapeCharacters) const;

  // Bytes in the given encoding; the C-string forms end in two zero bytes
  // for the Unicode code and one otherwise.
  /// The text's bytes in an encoding, without a terminator.
  /// Characters the encoding cannot hold are converted lossily.
  /// \param code a string-encoding code (kRVStringEncodingUTF8, ...).
  RVData DataContainingStringUsingEncoding(unsigned int code) const;
  /// The text's bytes in an encoding, with a terminator.
  /// \param code a string-encoding code (kRVStringEncodingUTF8, ...).
  /// \return the bytes followed by two zero bytes for the Unicode code and
  ///   by one zero byte otherwise.
  RVData DataContainingCStringUsingEncoding(unsigned int code) const;
  /// The UTF-8 bytes and one zero byte.
  RVData DataContainingUTF8CString() const;
  /// The UTF-16 bytes (as the platform writes them) and two zero bytes.
  RVData DataContainingUnicodeCString() const;
  /// The Mac OS Roman bytes and one zero byte.
  RVData DataContainingMacOSRomanCString() const;
  /// The Windows Latin-1 (code page 1252) bytes and one zero byte.
  RVData DataContainingWindowsLatin1CString() const;
  /// The ASCII bytes and one zero byte.
  RVData DataContainingASCIICString() const;

  /// Foundation format rules (`%@` for an object argument).
  /// \param format the format, with Foundation's placeholders (`%@`, <tt>\%d</tt>,
  ///   <tt>\%s</tt>, ...); pass handles as their Ref().
  /// \param ... the arguments the format names.
  /// \return the formatted text.
  static RVString StringWithFormat(RVString format, ...);
  /// Null bytes give the default (empty) string.
  /// \param bytes NUL-terminated text in the given encoding, or null.
  /// \param code a string-encoding code; any other code is logged as
  ///   "Unhandled string encoding" and read as UTF-8.
  /// \return the decoded string.
  ///@{
  static RVString StringWithCStringUsingEncoding(const char* bytes, unsigned int code);
  static RVString StringWithCStringUsingEncoding(const unsigned char* bytes, unsigned int code);
  ///@}

  /// Appends the other side as `%@` renders it; a nil left side counts as "".
  /// The string then holds a new string; copies made before keep the old one.
  /// \param other the text appended (converted to a string first).
  ///@{
  RVString& operator+=(const RVString& other);
  RVString& operator+=(RVId other);
  RVString& operator+=(const char* other);
  RVString& operator+=(const unsigned char* other);
  RVString& operator+=(const wchar_t* other);
  ///@}

 private:
  friend struct RVConstantString;
  RVString(RVId literal, ConstantObject constant) : RVObject(literal, constant) {}
};

/// Concatenation: a copy of the left side as a string, with the right side
/// appended by RVString::operator+=.
/// \param left the text in front (converted to a string first).
/// \param right the text appended (converted to a string first).
///@{
RV_EXPORT RVString operator+(const RVString& left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, CFStringRef right);
RV_EXPORT RVString operator+(CFStringRef left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, RVId right);
RV_EXPORT RVString operator+(RVId left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, NSString* right);
RV_EXPORT RVString operator+(NSString* left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, const char* right);
RV_EXPORT RVString operator+(const char* left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, const unsigned char* right);
RV_EXPORT RVString operator+(const unsigned char* left, const RVString& right);
RV_EXPORT RVString operator+(const RVString& left, const wchar_t* right);
RV_EXPORT RVString operator+(const wchar_t* left, const RVString& right);
///@}

/// The shared empty literal every default string holds.
RV_EXPORT extern const RVString kgRVInternalEmptyString;
/// One backslash; the name's spelling is part of the interface.
/// \note Both the misspelt name and the backslash (not "/") are kept by
///   design.
RV_EXPORT extern const RVString kFilePathSeperator;

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>
#include <Rovani/RVData.h>

#endif
