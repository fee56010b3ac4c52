// RVData: a handle on a byte buffer (NSData). Only InitWithLength leaves a
// mutable buffer held; every other member holds immutable data.
#ifndef ROVANI_RVDATA_H
#define ROVANI_RVDATA_H

#include <Rovani/RVDefines.h>
#include <Rovani/RVObject.h>
#include <Rovani/RVRange.h>
#include <Rovani/RVString.h>

class RVDictionary;

class RV_EXPORT RVData : public RVObject {
 public:
  RVData();
  RVData(const RVData& other);
  RVData(const RVObject& other);
  RVData(RVId obj);
  RVData(NSData* data);
  // The UTF-8 bytes of the text, without a terminator (cut at U+0000).
  RVData(RVString string);
  // The dictionary as an XML property list; empty when it cannot be one.
  RVData(const RVDictionary& dictionary);
  ~RVData() override;

  RVData& operator=(RVData other);
  RVData& operator=(RVId obj);
  RVData& operator=(NSData* data);
  RVData& operator=(RVString string);
  RVData& operator=(const RVDictionary& dictionary);
  operator NSData*() const;
  static RVString ClassType();

  // True when the length is 0, nothing held included.
  bool IsEmpty() const override;
  void Empty() override;

  void InitWithString(RVString string);
  void InitWithDictionary(const RVDictionary& dictionary);
  void InitWithData(RVData other);
  // A mutable buffer of n zero bytes.
  void InitWithLength(unsigned int length);
  void InitWithBytes(const void* bytes, unsigned int length);
  // Encoding codes as for strings; unrepresentable characters are converted
  // lossily. An empty string leaves the handle empty.
  void InitWithStringUsingEncoding(RVString string, unsigned int code);
  // Empty when the file cannot be read.
  void InitWithContentsOfFile(RVString path);

  static RVData DataWithLength(unsigned int length);
  static RVData DataWithBytes(const void* bytes, unsigned int length);
  static RVData DataWithStringUsingEncoding(RVString string, unsigned int code);
  static RVData DataWithContentsOfFile(RVString path);

  unsigned int Length() const;
  // No terminator is added: these are the bytes as they are.
  const void* Bytes() const;
  const char* CharPointer() const;
  const wchar_t* WideCharPointer() const;
  // Meaningful only when the held buffer is mutable.
  void* MutableBytes() const;
  void GetBytes(void* buffer) const;
  void GetBytesWithLength(void* buffer, unsigned int length) const;
  void GetBytesWithRange(void* buffer, RVRange range) const;
  RVRange Range() const;
  RVData SubdataWithRange(const RVRange& range) const;

  // Each holds an immutable copy with the bytes appended.
  void AppendData(RVData other);
  void AppendString(RVString string);

  bool WriteToFile(RVString path) const;
  bool WriteToFileAtomically(RVString path) const;
};

// Every class named above, complete, so that this header alone lets a
// caller use each member.
#include <Rovani/RVDictionary.h>

#endif
