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

// ---- JsonSyntax.cpp
// Checks JSON text strictly (comments allowed, as the library's reader
// allows them) and the rules this program puts on documents: an object at
// the top, nothing the library's trees cannot hold (null, an empty array or
// an empty object inside an array; a NUL character in a string), and,
// when the document is to become a property list, no null anywhere.
// Throws InputError naming the line and column or the key path.
// objectOnly false lets any value stand at the top.
void CheckJson(const std::string& text, bool forPropertyList, bool objectOnly = true);
// The offset of the first byte that does not belong to UTF-8 text, or npos.
size_t FirstNonUtf8(const std::string& bytes);
// A key path in messages: a.b, a["odd key"], a.list[2].
std::string MemberPath(const std::string& path, const std::string& key);

// ---- Documents.cpp
enum class Format { Json, XmlPropertyList, BinaryPropertyList, OpenStepPropertyList };

// What a document's bytes are: a property list when the first character
// that is not white space is "<", JSON otherwise.
Format Recognise(const std::string& bytes);

// The document's root dictionary as the library reads it: booleans are the
// library's own from JSON and the platform's boolean numbers from a
// property list. Throws InputError with the reason.
RVDictionary LoadDocument(const std::string& bytes, bool forPropertyList);
// The document in the other form's bytes. Throws InputError saying which
// value cannot be written and where.
std::string ToJson(const RVDictionary& root);
std::string ToPropertyList(const RVDictionary& root);

// One JSON value of any kind, ready for a property list (booleans as the
// platform's, empty collections as real ones). Throws InputError.
std::unique_ptr<RVObject> JsonValueForPropertyList(const std::string& text);

// The tree as print shows it: one value per line with its kind, indented by
// depth, keys sorted.
std::string Describe(const RVObject& value, const std::string& label = "");
// Standard Base64 text of bytes.
std::string Base64(const void* bytes, unsigned int length);

}  // namespace cli

#endif
