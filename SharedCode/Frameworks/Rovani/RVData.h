/// \file
/// RVData, a byte buffer.
#ifndef ROVANI_RVDATA_H
#define ROVANI_RVDATA_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVRange.h>
#include <Rovani/RVString.h>

class RVDictionary;

/// A handle on a byte buffer (NSData). Only InitWithLength leaves a
/// mutable buffer held; every other member holds immutable data.
///
/// Text members take the string-encoding codes of RVString
/// (kRVStringEncodingUTF8, ...). Byte access makes no length or range test
/// of its own: a request beyond the end is the platform's failure.
class RV_EXPORT RVData : public RVObject {
 public:
  /// An empty buffer (nothing held).
  RVData();
  /// Shares the other's buffer.
  RVData(const RVData& other);
  /// Shares the other handle's object, whatever its class.
  /// \param other a handle holding data.
  RVData(const RVObject& other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVData(RVId obj);
  RVData(NSData* data);
  ///@}
  /// The UTF-8 bytes of the text, without a terminator (cut at U+0000).
  /// \param string the text; an empty string gives an empty buffer.
  RVData(RVString string);
  /// The dictionary as an XML property list; empty when it cannot be one.
  RVData(const RVDictionary& dictionary);
  /// Releases the buffer.
  ~RVData() override;

  /// Shares the other's buffer.
  RVData& operator=(RVData other);
  /// Holds the object, retained. An RVId is taken as it is, without a class
  /// test.
  ///@{
  RVData& operator=(RVId obj);
  RVData& operator=(NSData* data);
  ///@}
  /// The UTF-8 bytes of the text, without a terminator (cut at U+0000).
  RVData& operator=(RVString string);
  /// The dictionary as an XML property list; empty when it cannot be one.
  RVData& operator=(const RVDictionary& dictionary);
  /// The held NSData, not retained; nil when nothing is held.
  operator NSData*() const;
  /// The class type, "RVData".
  static RVString ClassType();

  /// True when the length is 0, nothing held included.
  /// \return whether Length() is 0.
  bool IsEmpty() const override;
  /// Releases the buffer: the handle holds nothing afterwards.
  void Empty() override;

  /// The UTF-8 bytes of the text, without a terminator (cut at U+0000).
  /// \param string the text; an empty string leaves the handle empty.
  void InitWithString(RVString string);
  /// The dictionary as an XML property list; empty when it cannot be one.
  void InitWithDictionary(const RVDictionary& dictionary);
  /// Shares the other's buffer.
  void InitWithData(RVData other);
  /// A mutable buffer of n zero bytes.
  void InitWithLength(unsigned int length);
  /// A copy of \p length bytes.
  void InitWithBytes(const void* bytes, unsigned int length);
  /// Encoding codes as for strings; unrepresentable characters are converted
  /// lossily. An empty string leaves the handle empty.
  /// \param string the text.
  /// \param code a string-encoding code; any other code is logged as
  ///   "Unhandled string encoding" and treated as UTF-8.
  void InitWithStringUsingEncoding(RVString string, unsigned int code);
  /// Empty when the file cannot be read.
  /// \param path the file read whole.
  void InitWithContentsOfFile(RVString path);

  /// A new mutable buffer of zero bytes, as InitWithLength().
  static RVData DataWithLength(unsigned int length);
  /// A new buffer with a copy of the bytes, as InitWithBytes().
  static RVData DataWithBytes(const void* bytes, unsigned int length);
  /// A new buffer with the encoded text, as InitWithStringUsingEncoding().
  /// \param string the text.
  /// \param code a string-encoding code.
  /// \return the buffer; empty for an empty string.
  static RVData DataWithStringUsingEncoding(RVString string, unsigned int code);
  /// A new buffer with the file's bytes, as InitWithContentsOfFile().
  /// \param path the file read whole.
  /// \return the buffer; empty when the file cannot be read.
  static RVData DataWithContentsOfFile(RVString path);

  /// The number of bytes.
  /// \return the length; 0 when nothing is held.
  unsigned int Length() const;
  /// The bytes, as one address under three types.
  /// No terminator is added: these are the bytes as they are.
  /// \return the first byte's address; null when nothing is held.
  ///@{
  const void* Bytes() const;
  const char* CharPointer() const;
  const wchar_t* WideCharPointer() const;
  ///@}
  /// Meaningful only when the held buffer is mutable.
  /// \return the writable bytes of a buffer made by InitWithLength().
  void* MutableBytes() const;
  /// Copies every byte.
  /// \param buffer room for Length() bytes.
  void GetBytes(void* buffer) const;
  /// Copies the first bytes.
  /// \param buffer room for \p length bytes.
  /// \param length the number of bytes copied.
  void GetBytesWithLength(void* buffer, unsigned int length) const;
  /// Copies the bytes of a range.
  /// \param buffer room for the range's length.
  /// \param range the bytes copied.
  void GetBytesWithRange(void* buffer, RVRange range) const;
  /// The whole buffer as a range.
  /// \return (0, Length()).
  RVRange Range() const;
  /// A new buffer with the bytes of a range.
  /// \return the new buffer.
  RVData SubdataWithRange(const RVRange& range) const;

  /// Appends the other's bytes.
  /// Each holds an immutable copy with the bytes appended.
  void AppendData(RVData other);
  /// Appends the text's UTF-8 bytes (no terminator); the result is immutable.
  void AppendString(RVString string);

  /// Writes the bytes to a file, in place or through a temporary file
  /// (atomically).
  /// \return false when the file cannot be written.
  ///@{
  bool WriteToFile(RVString path) const;
  bool WriteToFileAtomically(RVString path) const;
  ///@}
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDictionary.h>

#endif
