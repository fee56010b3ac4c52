// get, set and remove: one value of a document, named by a key path.
// set and remove write the whole document back in its own format through
// the library's atomic writer, so the file is either the old one or the
// new one, and stays as it was when they refuse.
#include <climits>
#include <cstdlib>

#include "KeyPath.h"

namespace cli {

namespace {

const char* const kKinds[] = {"string", "integer", "real",  "boolean",
                              "date",   "data",    "array", "dictionary"};

// The operands and flags of get, set and remove. "--" ends the options;
// "-" alone is an operand. set's words after FILE and KEYPATH are its
// TYPE and VALUE, taken as they are.
struct Line {
  Words operands;
  bool json = false, xml = false;
  std::string expect;  // empty: any type
  bool expecting = false;
  std::string type = "-string";
};

Line ParseLine(const Words& args, bool isGet, bool isSet) {
  Line line;
  bool optionsEnded = false, typed = false;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& word = args[i];
    if (isSet && line.operands.size() >= 2) {
      if (!typed && line.operands.size() == 2 && IsValueType(word)) {
        line.type = word;
        typed = true;
      } else {
        line.operands.push_back(word);
      }
      continue;
    }
    if (optionsEnded || word.size() < 2 || word[0] != '-') {
      line.operands.push_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else if (word == "--help" || word == "-h") {
      throw HelpRequested{};
    } else if (isGet && word == "--json") {
      line.json = true;
    } else if (isGet && word == "--xml") {
      line.xml = true;
    } else if (isGet && (word == "--expect" || word.compare(0, 9, "--expect=") == 0)) {
      if (word == "--expect" && i + 1 >= args.size()) {
        throw UsageError{"option '--expect' needs a value"};
      }
      line.expect = word == "--expect" ? args[++i] : word.substr(9);
      line.expecting = true;
    } else {
      throw UsageError{"unknown option '" + word + "'"};
    }
  }
  size_t want = isSet ? 3 : 2;
  if (line.operands.size() < 1) throw UsageError{"missing FILE"};
  if (line.operands.size() < 2) throw UsageError{"missing KEYPATH"};
  if (line.operands.size() < want) throw UsageError{"missing VALUE"};
  if (line.operands.size() > want) {
    throw UsageError{"unexpected operand '" + line.operands[want] + "'"};
  }
  if (line.json && line.xml) throw UsageError{"--json and --xml exclude each other"};
  if (line.expecting) {
    bool known = false;
    for (const char* kind : kKinds) known = known || line.expect == kind;
    if (!known) {
      throw UsageError{"unknown type '" + line.expect +
                       "' (string, integer, real, boolean, date, data, array or dictionary)"};
    }
  }
  return line;
}

Document Read(const std::string& file) {
  return WithPrefix(DisplayName(file), [&] { return ReadDocument(ReadInput(file)); });
}

// The edited document back where it came from, in its own format.
int WriteBack(const std::string& file, const RVObject& root, Format format) {
  std::string bytes = WithPrefix(DisplayName(file), [&] {
    if (format == Format::OpenStepPropertyList) {
      throw InputError{
          "an OpenStep property list can be read but not written; convert it first "
          "(rovani convert xml)"};
    }
    return WriteDocument(root, format);
  });
  if (file == "-") {
    WithPrefix("standard output", [&] { WriteOutput("-", bytes); });
  } else {
    WithPrefix(file, [&] { ReplaceFile(file, bytes); });
  }
  return 0;
}

}  // namespace

void ReplaceFile(const std::string& path, const std::string& bytes) {
  if (bytes.size() > UINT_MAX) throw InputError{"a document over 4 GiB cannot be written"};
  // Through a symbolic link to the file it names: the link stays a link.
  std::string target = path;
  if (char* resolved = realpath(path.c_str(), nullptr)) {
    target = resolved;
    std::free(resolved);
  }
  RVData data = RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size()));
  if (!data.WriteToFileAtomically(FromUtf8(target))) {
    throw InputError{"cannot write (the file is left as it was)"};
  }
}

int Get(const Words& args) {
  Line line = ParseLine(args, true, false);
  KeyPath path = ParseKeyPath(line.operands[1]);
  Document document = Read(line.operands[0]);
  std::unique_ptr<RVObject> value =
      WithPrefix(DisplayName(line.operands[0]), [&] { return ValueAtPath(*document.root, path); });
  Kind kind = KindOf(*value);
  const char* name = KindName(kind);
  if (line.expecting && (name == nullptr || line.expect != name)) {
    auto article = [](const std::string& kind) {
      return (kind[0] == 'a' || kind[0] == 'i' ? "an " : "a ") + kind;
    };
    throw InputError{DisplayName(line.operands[0]) + ": " + line.operands[1] + " is " +
                     (name != nullptr ? article(name) : "a value of another kind") + ", not " +
                     article(line.expect)};
  }
  std::string out;
  if (line.json || line.xml) {
    out = WithPrefix(line.operands[1], [&] {
      return WriteDocument(*value, line.json ? Format::Json : Format::XmlPropertyList);
    });
  } else if (kind == Kind::Array || kind == Kind::Dictionary) {
    out = Describe(*value);
  } else {
    out = ScalarText(*value) + "\n";
  }
  WriteOutput("-", out);
  return 0;
}

int Set(const Words& args) {
  Line line = ParseLine(args, false, true);
  KeyPath path = ParseKeyPath(line.operands[1]);
  std::unique_ptr<RVObject> value =
      WithPrefix(line.operands[1], [&] { return TypedValue(line.type, line.operands[2]); });
  Document document = Read(line.operands[0]);
  std::unique_ptr<RVObject> root = WithPrefix(DisplayName(line.operands[0]), [&] {
    return EditedAtPath(*document.root, path, value.get());
  });
  return WriteBack(line.operands[0], *root, document.format);
}

int Remove(const Words& args) {
  Line line = ParseLine(args, false, false);
  KeyPath path = ParseKeyPath(line.operands[1]);
  Document document = Read(line.operands[0]);
  std::unique_ptr<RVObject> root = WithPrefix(
      DisplayName(line.operands[0]), [&] { return EditedAtPath(*document.root, path, nullptr); });
  return WriteBack(line.operands[0], *root, document.format);
}

}  // namespace cli
