// RVString: the library's text value, a handle on an immutable NSString.
#ifndef ROVANI_RVSTRING_H
#define ROVANI_RVSTRING_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVRange.h>

// The library's own string-encoding codes. Any other code is logged as
// "Unhandled string encoding" and treated as UTF-8.
enum : unsigned int {
  kRVStringEncodingUTF8 = 0,
  kRVStringEncodingUnicode = 1,  // UTF-16 as the platform writes it
  kRVStringEncodingMacOSRoman = 2,
  kRVStringEncodingWindowsLatin1 = 3,  // code page 1252
  kRVStringEncodingASCII = 4,
};

class RV_EXPORT RVString : public RVObject {
 public:
  // Holds the shared empty literal (not nil).
  RVString();
  RVString(const RVString& other);
  RVString(RVId obj);
  RVString(NSString* str);
  // A null or non-string reference gives the default (empty literal) string.
  RVString(CFStringRef str);
  // A null pointer leaves the string nil; otherwise decoded as UTF-8.
  RVString(const char* str);
  RVString(const unsigned char* str);
  // Read as a NUL-terminated array of 16-bit Unicode units ("%S"), whatever
  // the width of wchar_t; no null check.
  RVString(const wchar_t* str);
  // UTF-8 bytes; when the last byte is zero, only up to the first zero byte.
  RVString(const RVData& data);
  // The other's object when it is a string, else its Description().
  RVString(const RVObject& other);
  ~RVString() override;

  RVString& operator=(const RVString& other);
  RVString& operator=(RVId obj);
  RVString& operator=(NSString* str);
  RVString& operator=(CFStringRef str);
  RVString& operator=(const char* str);
  RVString& operator=(const unsigned char* str);
  RVString& operator=(const wchar_t* str);
  RVString& operator=(const RVData& data);
  RVString& operator=(const RVObject& other);

  operator NSString*() const;
  operator CFStringRef() const;
  static RVString ClassType();

  // Queries. A nil string answers 0, false or the empty result.
  unsigned int Length() const;
  bool IsEmpty() const override;
  RVRange Range() const;
  // -1, 0 or 1.
  int Compare(RVString other) const;
  int CompareWithOptions(RVString other, unsigned int options) const;
  int CaseInsensitiveCompare(RVString other) const;
  RVRange RangeOfString(const RVString& str) const;
  RVRange RangeOfStringWithOptions(const RVString& str, unsigned int options) const;
  RVRange RangeOfStringWithOptionsInRange(const RVString& str, unsigned int options,
                                          const RVRange& range) const;
  RVArray ComponentsSeparatedByString(const RVString& separator) const;
  bool HasPrefix(const RVString& prefix) const;
  bool HasSuffix(const RVString& suffix) const;
  double DoubleValue() const;
  float FloatValue() const;
  int IntValue() const;
  bool BoolValue() const;

  // Case-sensitive equality; a nil left side is never equal.
  bool IsEqualToString(const RVString& other) const;
  bool IsEqualToString(RVId other) const;
  bool IsEqualToString(const char* other) const;
  bool IsEqualToString(const unsigned char* other) const;
  bool IsEqualToString(const wchar_t* other) const;
  bool operator==(const RVString& other) const;
  bool operator==(RVId other) const;
  bool operator==(NSString* other) const;
  bool operator==(const char* other) const;
  bool operator==(const unsigned char* other) const;
  bool operator==(const wchar_t* other) const;
  bool operator!=(const RVString& other) const;
  bool operator!=(RVId other) const;
  bool operator!=(NSString* other) const;
  bool operator!=(const char* other) const;
  bool operator!=(const unsigned char* other) const;
  bool operator!=(const wchar_t* other) const;

  // Substrings and transformations. Platform exceptions pass through,
  // except in SubstringWithRange: a range exception is thrown as a heap
  // RVError* (code 1, domain RVStringDomain), any other platform exception
  // as a heap RVString* holding its description. The catcher deletes it.
  RVString SubstringToIndex(unsigned int index) const;
  RVString SubstringFromIndex(unsigned int index) const;
  RVString SubstringWithRange(RVRange range) const;
  // Literal, case-sensitive, non-overlapping replace-all; nothing is
  // replaced when the replacement contains the target.
  RVString StringByReplacingOccurrencesOfStringWithString(const RVString& target,
                                                         const RVString& replacement) const;
  RVString StringByDeletingLastPathComponent() const;
  RVString StringByDeletingPathExtension() const;
  RVString LastPathComponent() const;
  RVString PathExtension() const;
  // An empty receiver appends to "".
  RVString StringByAppendingPathComponent(const RVString& component) const;
  RVString StringByAppendingPathExtension(const RVString& extension) const;
  RVString StringByAddingPercentEscapes() const;
  // Escapes what is not legal in a URL, and escapeCharacters as well.
  RVString StringByAddingPercentEscapesSpecifyingEscapeCharacters(RVString escapeCharacters) const;

  // Bytes in the given encoding; the C-string forms end in two zero bytes
  // for the Unicode code and one otherwise.
  RVData DataContainingStringUsingEncoding(unsigned int code) const;
  RVData DataContainingCStringUsingEncoding(unsigned int code) const;
  RVData DataContainingUTF8CString() const;
  RVData DataContainingUnicodeCString() const;
  RVData DataContainingMacOSRomanCString() const;
  RVData DataContainingWindowsLatin1CString() const;
  RVData DataContainingASCIICString() const;

  // Foundation format rules ("%@" for an object argument).
  static RVString StringWithFormat(RVString format, ...);
  // Null bytes give the default (empty) string.
  static RVString StringWithCStringUsingEncoding(const char* bytes, unsigned int code);
  static RVString StringWithCStringUsingEncoding(const unsigned char* bytes, unsigned int code);

  // Appends the other side as "%@" renders it; a nil left side counts as "".
  RVString& operator+=(const RVString& other);
  RVString& operator+=(RVId other);
  RVString& operator+=(const char* other);
  RVString& operator+=(const unsigned char* other);
  RVString& operator+=(const wchar_t* other);

 private:
  friend struct RVConstantString;
  RVString(RVId literal, ConstantObject constant) : RVObject(literal, constant) {}
};

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

// The shared empty literal every default string holds.
RV_EXPORT extern const RVString kgRVInternalEmptyString;
// One backslash; the name's spelling is part of the interface.
RV_EXPORT extern const RVString kFilePathSeperator;

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVArray.h>
#include <Rovani/RVData.h>

#endif
