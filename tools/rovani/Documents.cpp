// Settings documents: every format the library reads, told apart by
// content; property lists written by the library's writers and JSON by this
// program (integers of 64 bits exactly, keys sorted); and the tree as print
// shows it. The library checks every rule (text, nesting, dates, integer
// widths) and names the refused value; nothing is re-checked here.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <memory>
#include <utility>

#include "Cli.h"
#include "Platform/Text/RVBase64.h"

namespace cli {

namespace {

using Kind = RVPropertyList::Kind;

// The keys of a dictionary, each with its UTF-8 text, in byte order.
std::vector<std::pair<std::string, RVString>> SortedKeys(const RVDictionary& dictionary) {
  std::vector<std::pair<std::string, RVString>> keys;
  RVArray all = dictionary.KeyEnumerator().AllObjects();
  for (unsigned int i = 0; i < all.Count(); ++i) {
    RVString key = all.StringAtIndex(i);
    keys.emplace_back(Utf8(key), key);
  }
  std::sort(keys.begin(), keys.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  return keys;
}

// Key paths as the library writes them: "." between keys, "\." and "\\"
// inside a key, array elements by index.
std::string Member(const std::string& path, const std::string& key) {
  std::string out = path.empty() ? path : path + ".";
  for (char c : key) {
    if (c == '.' || c == '\\') out += '\\';
    out += c;
  }
  return out;
}

std::string Element(const std::string& path, unsigned int index) {
  return (path.empty() ? path : path + ".") + std::to_string(index);
}

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw InputError{(path.empty() ? why : path + ": " + why)};
}

std::string IntegerText(const RVObject& value, Kind kind) {
  RVNumber number(value.Ref());
  return kind == Kind::kUnsignedInteger ? std::to_string(static_cast<unsigned long>(number))
                                        : std::to_string(static_cast<long>(number));
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    unsigned char u = static_cast<unsigned char>(c);
    switch (c) {
      case '"': quoted += "\\\""; break;
      case '\\': quoted += "\\\\"; break;
      case '\n': quoted += "\\n"; break;
      case '\t': quoted += "\\t"; break;
      case '\r': quoted += "\\r"; break;
      case '\b': quoted += "\\b"; break;
      case '\f': quoted += "\\f"; break;
      default:
        if (u < 0x20 || u == 0x7F) {
          char escaped[8];
          std::snprintf(escaped, sizeof escaped, "\\u%04x", u);
          quoted += escaped;
        } else {
          quoted += c;
        }
    }
  }
  return quoted + "\"";
}

std::string DataText(const RVObject& value) {
  RVData data(value.Ref());
  return RVBase64Encode(data.Bytes(), data.Length());
}

// JSON text of value, two spaces a level, keys sorted.
void JsonInto(const RVObject& value, const JsonOptions& options, const std::string& path,
              size_t depth, std::string& out) {
  std::string indent(depth * 2 + 2, ' ');
  Kind kind = RVPropertyList::KindOf(value);
  switch (kind) {
    case Kind::kDictionary: {
      RVDictionary dictionary(value.Ref());
      auto keys = SortedKeys(dictionary);
      if (keys.empty()) {
        out += "{}";
        return;
      }
      out += "{\n";
      for (size_t i = 0; i < keys.size(); ++i) {
        std::unique_ptr<RVObject> child(dictionary.ValueForKey(keys[i].second));
        out += indent + Quoted(keys[i].first) + ": ";
        JsonInto(*child, options, Member(path, keys[i].first), depth + 1, out);
        out += i + 1 < keys.size() ? ",\n" : "\n";
      }
      out += std::string(depth * 2, ' ') + "}";
      return;
    }
    case Kind::kArray: {
      RVArray array(reinterpret_cast<CFArrayRef>(value.Ref()));
      if (array.Count() == 0) {
        out += "[]";
        return;
      }
      out += "[\n";
      for (unsigned int i = 0; i < array.Count(); ++i) {
        std::unique_ptr<RVObject> child(array.ObjectAtIndex(i));
        out += indent;
        JsonInto(*child, options, Element(path, i), depth + 1, out);
        out += i + 1 < array.Count() ? ",\n" : "\n";
      }
      out += std::string(depth * 2, ' ') + "]";
      return;
    }
    case Kind::kString:
      out += Quoted(Utf8(RVString(reinterpret_cast<CFStringRef>(value.Ref()))));
      return;
    case Kind::kInteger:
    case Kind::kUnsignedInteger:
      out += IntegerText(value, kind);
      return;
    case Kind::kReal: {
      double real = static_cast<double>(RVNumber(value.Ref()));
      if (!std::isfinite(real)) Refuse(path, "the real " + RealText(real) + ", which JSON cannot hold");
      out += RealText(real);
      return;
    }
    case Kind::kBoolean:
      out += BoolOf(value) ? "true" : "false";
      return;
    case Kind::kNull:
      out += "null";
      return;
    case Kind::kDate:
      if (!options.datesAsText) Refuse(path, "a date, which JSON cannot hold (see --dates-as-text)");
      out += "\"" + DateText(RVDate(reinterpret_cast<CFDateRef>(value.Ref()))) + "\"";
      return;
    case Kind::kData:
      if (!options.dataAsBase64) Refuse(path, "data, which JSON cannot hold (see --data-as-base64)");
      out += "\"" + DataText(value) + "\"";
      return;
    case Kind::kOther:
      break;
  }
  Refuse(path, "a value of class " + Utf8(value.ObjectsClassType()) + ", which JSON cannot hold");
}

std::string KeyLabel(const std::string& key) {
  bool plain = !key.empty();
  for (char c : key) {
    plain = plain && c != ':' && c != '"' && c != '\\' && static_cast<unsigned char>(c) > 0x20;
  }
  return plain ? key : Quoted(key);
}

std::string Count(unsigned int count, const char* one, const char* many) {
  return "(" + std::to_string(count) + " " + (count == 1 ? one : many) + ")";
}

void DescribeInto(const RVObject& value, const std::string& label, int depth, std::string& out) {
  out.append(static_cast<size_t>(depth) * 2, ' ');
  if (!label.empty()) out += label + ": ";
  Kind kind = RVPropertyList::KindOf(value);
  switch (kind) {
    case Kind::kDictionary: {
      RVDictionary dictionary(value.Ref());
      auto keys = SortedKeys(dictionary);
      out += "dictionary " + Count(static_cast<unsigned int>(keys.size()), "key", "keys") + "\n";
      for (const auto& key : keys) {
        std::unique_ptr<RVObject> child(dictionary.ValueForKey(key.second));
        if (child != nullptr) DescribeInto(*child, KeyLabel(key.first), depth + 1, out);
      }
      return;
    }
    case Kind::kArray: {
      RVArray array(reinterpret_cast<CFArrayRef>(value.Ref()));
      out += "array " + Count(array.Count(), "item", "items") + "\n";
      for (unsigned int i = 0; i < array.Count(); ++i) {
        std::unique_ptr<RVObject> child(array.ObjectAtIndex(i));
        DescribeInto(*child, "[" + std::to_string(i) + "]", depth + 1, out);
      }
      return;
    }
    case Kind::kString:
      out += "string " + Quoted(Utf8(RVString(reinterpret_cast<CFStringRef>(value.Ref())))) + "\n";
      return;
    case Kind::kBoolean:
      out += std::string("boolean ") + (BoolOf(value) ? "true" : "false") + "\n";
      return;
    case Kind::kInteger:
    case Kind::kUnsignedInteger:
      out += "number " + IntegerText(value, kind) + "\n";
      return;
    case Kind::kReal:
      out += "number " + RealText(static_cast<double>(RVNumber(value.Ref()))) + "\n";
      return;
    case Kind::kDate:
      out += "date " + DateText(RVDate(reinterpret_cast<CFDateRef>(value.Ref()))) + "\n";
      return;
    case Kind::kData: {
      RVData data(value.Ref());
      out += "data " + Count(data.Length(), "byte", "bytes") + " " + DataText(value) + "\n";
      return;
    }
    case Kind::kNull:
      out += "null\n";
      return;
    case Kind::kOther:
      out += Utf8(value.ObjectsClassType()) + " " + Utf8(value.Description()) + "\n";
      return;
  }
}

Format FormatOf(RVDocumentFormat format) {
  switch (format) {
    case RVDocumentFormat::kBinaryPropertyList:
      return Format::BinaryPropertyList;
    case RVDocumentFormat::kOpenStepPropertyList:
      return Format::OpenStepPropertyList;
    case RVDocumentFormat::kJson:
      return Format::Json;
    default:
      return Format::XmlPropertyList;
  }
}

// Whether bytes are a property list by their first bytes: binary, or XML
// ("<" after an optional byte-order mark and white space).
bool LooksLikePropertyList(const std::string& bytes) {
  if (bytes.compare(0, 8, "bplist00") == 0) return true;
  size_t start = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  size_t first = bytes.find_first_not_of(" \t\r\n", start);
  return first != std::string::npos && bytes[first] == '<';
}

// The JSON reader's view of bytes: a leading byte-order mark is no part of
// the text, but counts as a column of the first line.
std::unique_ptr<RVObject> ParseJson(const std::string& bytes, RVFormatError* error) {
  bool mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0;
  std::unique_ptr<RVObject> root = RVJsonDocument::Parse(mark ? bytes.substr(3) : bytes, error);
  if (root == nullptr && mark && error->line == 1) ++error->column;
  return root;
}

}  // namespace

bool BoolOf(const RVObject& value) {
  if (const RVBool* boolean = dynamic_cast<const RVBool*>(&value)) return static_cast<bool>(*boolean);
  return static_cast<bool>(RVNumber(value.Ref()));
}

// The shortest text that reads back as the same double, with ".0" on an
// integral value so that it reads back as a real.
std::string RealText(double value) {
  char text[64];
  auto result = std::to_chars(text, text + sizeof text, value);
  std::string shown(text, result.ptr);
  if (std::isfinite(value) && shown.find_first_of(".en") == std::string::npos) shown += ".0";
  return shown;
}

Document ReadDocument(const std::string& bytes) {
  RVFormatError error;
  if (LooksLikePropertyList(bytes)) {
    std::unique_ptr<RVObject> root = RVPropertyList::Read(bytes, &error);
    if (root == nullptr) throw InputError{error.Description()};
    return Document{std::move(root), FormatOf(error.format)};
  }
  // Other text is JSON or OpenStep: the one that reads it, or failing both,
  // the fault of the one that read further.
  std::unique_ptr<RVObject> root = ParseJson(bytes, &error);
  if (root != nullptr) return Document{std::move(root), Format::Json};
  RVFormatError openStep;
  root = RVPropertyList::Read(bytes, &openStep);
  if (root != nullptr) return Document{std::move(root), Format::OpenStepPropertyList};
  bool further = openStep.line > error.line ||
                 (openStep.line == error.line && openStep.column > error.column);
  throw InputError{(further ? openStep : error).Description()};
}

std::string WriteDocument(const RVObject& root, Format format, const JsonOptions& options) {
  if (format == Format::Json) {
    std::string out;
    JsonInto(root, options, "", 0, out);
    return out + "\n";
  }
  RVFormatError error;
  bool binary = format == Format::BinaryPropertyList;
  std::string bytes = RVPropertyList::Write(
      root, binary ? RVDocumentFormat::kBinaryPropertyList : RVDocumentFormat::kXMLPropertyList,
      &error);
  if (error.IsError()) throw InputError{error.Description()};
  // An XML document ends without a newline; a file gets one.
  return binary ? bytes : bytes + "\n";
}

std::unique_ptr<RVObject> ParseJsonValue(const std::string& text) {
  RVFormatError error;
  std::unique_ptr<RVObject> value = ParseJson(text, &error);
  if (value == nullptr) throw InputError{error.Description()};
  return value;
}

std::string Describe(const RVObject& value, const std::string& label) {
  std::string out;
  DescribeInto(value, label.empty() ? label : KeyLabel(label), 0, out);
  return out;
}


}  // namespace cli
