// Untyped access to jsoncpp value trees. jsoncpp reports trouble by throwing
// C++ exceptions, and a C++ catch clause never matches in an Objective-C++
// file with this runtime, so every jsoncpp call that can throw is made in
// RVJsonValue.cpp, a plain C++ file, inside a try that catches everything.
// Nothing here throws, and no jsoncpp type appears: a value is a void*
// (a Json::Value*). Private: never installed.
#ifndef ROVANI_PLATFORM_RVJSONVALUE_H
#define ROVANI_PLATFORM_RVJSONVALUE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What a value is, with integers sorted by the conversion that reads them
// without loss.
enum RVJsonKind {
  kRVJsonNull,
  kRVJsonInt,      // signed, fits in 32 bits: integer
  kRVJsonInt64,    // signed beyond 32 bits: integer
  kRVJsonUInt,     // unsigned, fits in 32 bits: unsignedInteger
  kRVJsonUInt64,   // unsigned beyond 32 bits: unsignedInteger
  kRVJsonReal,     // real
  kRVJsonString,   // text, up to its terminator (the value's own may hold NULs)
  kRVJsonBool,     // boolean
  kRVJsonArray,    // count elements
  kRVJsonObject,   // count members
  kRVJsonOther     // a type this library does not know
};

struct RVJsonDescription {
  RVJsonKind kind = kRVJsonNull;
  int64_t integer = 0;
  uint64_t unsignedInteger = 0;
  double real = 0;
  bool boolean = false;
  const char* text = nullptr;  // NUL-terminated, owned by the value
  size_t length = 0;           // the text's bytes, NULs inside included
  size_t count = 0;
  // Where the value stands in the text it was parsed from: the offsets of
  // its first byte and of the byte after it (0 for values built by hand).
  size_t start = 0;
  size_t limit = 0;
};

// One element of an array (name null) or one member of an object, in the
// order jsoncpp keeps them (index order; its own key order for members).
// Names are NUL-terminated and owned by the tree.
struct RVJsonChild {
  const char* name;
  const void* value;
  size_t nameLength = 0;  // the name's bytes, NULs inside included
};

// Parsing with jsoncpp's Reader (its default features, comments collected).
// A new root the caller frees with RVJsonDelete, or null when the reader
// refuses the text or throws.
void* RVJsonParse(const char* begin, const char* end);
// The same, and when the reader refuses the text, the reason it gives
// (its first structured error) and the offset that error starts at. Text
// after the value is the caller's to check.
void* RVJsonParseWithReason(const char* begin, const char* end, std::string* reason,
                            size_t* offset);
void RVJsonDelete(void* value);

RVJsonDescription RVJsonDescribe(const void* value);
// Replaces the contents of children with those of an array or object.
void RVJsonChildren(const void* value, std::vector<RVJsonChild>* children);

// Building. RVJsonNew makes a new null value; the setters replace a value's
// contents; the slots are new (or existing) children, null until set, that
// stay valid as long as their parent does.
void* RVJsonNew();
void RVJsonSetNull(void* value);
void RVJsonSetInt(void* value, int integer);
void RVJsonSetReal(void* value, double real);
void RVJsonSetBool(void* value, bool boolean);
// The text up to its first NUL.
void RVJsonSetString(void* value, const char* text);
void RVJsonSetArray(void* value);
void RVJsonSetObject(void* value);
void* RVJsonAppendSlot(void* array);
// The member named by the text up to its first NUL.
void* RVJsonMemberSlot(void* object, const char* name);

// jsoncpp's StyledWriter's text; false (and no text) when writing fails.
bool RVJsonWriteStyled(const void* value, std::string* text);

#endif
