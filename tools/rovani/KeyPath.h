// One value inside a document: key paths, the kinds of values, their text
// on the command line both ways, and the commands built on them (get, set,
// remove, defaults export and import).
#ifndef ROVANI_TOOLS_KEYPATH_H
#define ROVANI_TOOLS_KEYPATH_H

#include <memory>
#include <string>
#include <vector>

#include "Cli.h"
#include "Commands.h"

namespace cli {

// Runs work, putting prefix (a file's name, a key path) and ": " before
// the message of any input error it throws.
template <typename Work>
auto WithPrefix(const std::string& prefix, Work work) -> decltype(work()) {
  try {
    return work();
  } catch (InputError& error) {
    throw InputError{prefix + ": " + error.message};
  }
}

// ---- KeyPath.cpp
// Keys joined by "."; "\." is a dot inside a key and "\\" a backslash. A
// part that is a decimal number indexes an array (in a dictionary it is a
// key like any other).
using KeyPath = std::vector<std::string>;
// Throws UsageError for a backslash before anything else or at the end.
KeyPath ParseKeyPath(const std::string& text);
// The first count parts written back as a key path.
std::string JoinKeyPath(const KeyPath& path, size_t count);

// The value at path (a new handle). Throws InputError saying which part is
// missing or cannot be entered.
std::unique_ptr<RVObject> ValueAtPath(const RVObject& root, const KeyPath& path);
// A copy of root with value stored at path (replacing, inserting, or
// appending at an index equal to the array's count), or with the value at
// path removed (value null). The parent must exist. Throws InputError.
std::unique_ptr<RVObject> EditedAtPath(const RVObject& root, const KeyPath& path,
                                       const RVObject* value);

// ---- Values.cpp
enum class Kind { String, Integer, Real, Boolean, Date, Data, Array, Dictionary, Null, Other };
Kind KindOf(const RVObject& value);
// "string", "integer", ... as --expect names them; nullptr for Other.
const char* KindName(Kind kind);
// A scalar as get prints it, without the newline: text, decimal, the
// shortest real that reads back the same, true/false, ISO 8601 UTC, Base64.
std::string ScalarText(const RVObject& value);
// A value from the command line: type is -string, -int, -float, -bool,
// -date, -data or -json. Throws InputError saying why the text is refused.
std::unique_ptr<RVObject> TypedValue(const std::string& type, const std::string& text);
bool IsValueType(const std::string& word);
// Strict standard Base64 (white space skipped). Throws InputError.
std::string DecodeBase64(const std::string& text);

// ---- Edit.cpp
int Get(const Words& args);
int Set(const Words& args);
int Remove(const Words& args);
// Replaces the file at path (the file a symbolic link names, when it is
// one) atomically: readers see the old bytes or the new, never a part.
void ReplaceFile(const std::string& path, const std::string& bytes);

// ---- DefaultsTransfer.cpp
// Throws UsageError for a name that cannot be a domain's file name.
void CheckDomainName(const std::string& name);
// The words after "defaults export" and "defaults import".
int DefaultsExport(const Words& args);
int DefaultsImport(const Words& args);

}  // namespace cli

#endif
