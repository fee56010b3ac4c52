// Shared pieces of the rovani program: its two kinds of failure, byte
// input and output, and the documents it reads and writes.
#ifndef ROVANI_TOOLS_CLI_H
#define ROVANI_TOOLS_CLI_H

#include <Rovani/Rovani.h>

#include <memory>
#include <string>
#include <vector>

namespace cli {

// Bad usage: exit status 2, with a hint to the command's help.
struct UsageError {
  std::string message;
};

// Bad input (a file that cannot be read, a document that does not parse, a
// value that cannot be stored): exit status 1.
struct InputError {
  std::string message;
};

// ---- Io.cpp
// The whole of a file, or of standard input for "-". Throws InputError
// with the reason, which the caller puts after the file's name.
std::string ReadInput(const std::string& path);
// Writes bytes to a file, or to standard output for "-". Throws InputError
// as ReadInput does.
void WriteOutput(const std::string& path, const std::string& bytes);
// The name a path is shown by in messages ("standard input" for "-").
std::string DisplayName(const std::string& path);

// The UTF-8 bytes of a string, NUL characters included.
std::string Utf8(const RVString& text);
RVString FromUtf8(const std::string& bytes);

// ---- Documents.cpp
enum class Format { Json, XmlPropertyList, BinaryPropertyList, OpenStepPropertyList };

struct Document {
  std::unique_ptr<RVObject> root;
  Format format;
};

// Any format, told apart by content; the root may be any value. Throws
// InputError whose message is the place and reason ("3:14: expected a
// value", "byte 40: ...").
Document ReadDocument(const std::string& bytes);

struct JsonOptions {
  bool datesAsText = false;   // dates as ISO 8601 text, one way
  bool dataAsBase64 = false;  // data as Base64 text, one way
};

// root in format (Json, XmlPropertyList or BinaryPropertyList); throws
// InputError naming the refused value's key path ("servers.2.name: a null
// value").
std::string WriteDocument(const RVObject& root, Format format, const JsonOptions& options = {});

// One JSON value of any kind (containers included), 64-bit integers exact,
// ready for a property list. Throws InputError with the place.
std::unique_ptr<RVObject> ParseJsonValue(const std::string& text);

// The tree as print shows it: one value per line with its kind, indented by
// depth, keys sorted.
std::string Describe(const RVObject& value, const std::string& label = "");
// A boolean's truth (the library's RVBool or the platform's boolean number).
bool BoolOf(const RVObject& value);
// The shortest text that reads back as the same double ("2.0", "0.1", "nan").
std::string RealText(double value);
// A date in ISO 8601 UTC, floored to the second ("2026-11-25T10:30:05Z").
std::string DateText(const RVDate& date);

}  // namespace cli

#endif
