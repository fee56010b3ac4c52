// Settings documents: reading JSON and XML property lists into the
// library's trees, writing them in either form, and describing them.
//
// The two forms hold booleans differently. The library's JSON reader makes
// its own booleans (RVBool), which the property-list writer writes as
// <true/> and <false/>; those come back as the platform's boolean numbers,
// which the JSON writer takes for integers. So the JSON writer is handed a
// tree with the booleans it knows, and everything either writer would
// refuse or silently lose is refused here first, with where it is.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <memory>
#include <typeinfo>
#include <utility>

#include "Cli.h"
#include "Platform/Text/RVBase64.h"

namespace cli {

namespace {

const int kMaxDepth = 512;

enum class Kind { Dictionary, Array, String, Boolean, Integer, Real, Date, Data, Null, Other };

// The platform's own boolean numbers (what <true/> reads as) are numbers
// to the library's factory; the bridge's boolean conversion accepts them
// and hands back that very object, while for any other number it answers
// the shared false boolean.
bool IsPlatformBoolean(const RVNumber& number) {
  CFBooleanRef ref = reinterpret_cast<CFBooleanRef>(number.Ref());
  return number.Ref() != nullptr && RVInternalRef::Convert(ref).Ref() == number.Ref();
}

Kind KindOf(const RVObject& value) {
  if (dynamic_cast<const RVDictionary*>(&value) != nullptr) return Kind::Dictionary;
  if (dynamic_cast<const RVArray*>(&value) != nullptr) return Kind::Array;
  if (dynamic_cast<const RVString*>(&value) != nullptr) return Kind::String;
  if (dynamic_cast<const RVBool*>(&value) != nullptr) return Kind::Boolean;
  if (const RVNumber* number = dynamic_cast<const RVNumber*>(&value)) {
    if (IsPlatformBoolean(*number)) return Kind::Boolean;
    return number->IsFloatType() ? Kind::Real : Kind::Integer;
  }
  if (dynamic_cast<const RVDate*>(&value) != nullptr) return Kind::Date;
  if (dynamic_cast<const RVData*>(&value) != nullptr) return Kind::Data;
  if (typeid(value) == typeid(RVObject) && value.Ref() == nullptr) return Kind::Null;
  return Kind::Other;
}

bool BoolOf(const RVObject& value) {
  if (const RVBool* boolean = dynamic_cast<const RVBool*>(&value)) return static_cast<bool>(*boolean);
  return static_cast<bool>(dynamic_cast<const RVNumber&>(value));
}

// Paths of deeply nested values are shown by their last part.
std::string Where(const std::string& path) {
  if (path.empty()) return "the top level";
  return path.size() <= 100 ? path : "..." + path.substr(path.size() - 97);
}

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

std::string ElementPath(const std::string& path, unsigned int index) {
  return path + "[" + std::to_string(index) + "]";
}

// Defaults: a property list bound for a user-defaults store, which gets the
// platform's booleans (what the store reads back either way).
enum class Target { Json, PropertyList, Defaults };

// The property-list writer refuses what XML 1.0 cannot hold: control
// characters other than tab, LF and CR, U+FFFE and U+FFFF, and unpaired
// surrogates (text that is no UTF-8). Everything else it keeps as it is.
void CheckPropertyListText(const std::string& text, const std::string& path) {
  if (FirstNonUtf8(text) != std::string::npos) {
    throw InputError{"text that is not Unicode at " + Where(path) +
                     ": a property list cannot hold it"};
  }
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    bool nonCharacter = c == 0xEF && i + 2 < text.size() && text[i + 1] == '\xBF' &&
                        (text[i + 2] == '\xBE' || text[i + 2] == '\xBF');
    if (control || nonCharacter) {
      char code[16];
      std::snprintf(code, sizeof code, "U+%04X", control ? c : (text[i + 2] == '\xBE' ? 0xFFFE : 0xFFFF));
      throw InputError{std::string("the character ") + code + " at " + Where(path) +
                       ": XML cannot hold it"};
    }
  }
}

// Dates the property-list writer writes: years 1 to 9999.
void CheckPropertyListDate(const RVDate& date, const std::string& path) {
  double seconds = std::floor(date.TimeIntervalSinceRefereceDate());
  if (!(seconds >= -63113904000.0 && seconds < 252423993600.0)) {
    throw InputError{"a date outside the years 1 to 9999 at " + Where(path) +
                     ": a property list cannot hold it"};
  }
}

// A copy of value fit for the target's writer, or null when value is fit
// as it is. Throws InputError for what the target cannot hold.
std::unique_ptr<RVObject> Adapt(const RVObject& value, Target target, const std::string& path,
                                int depth) {
  if (depth > kMaxDepth) {
    throw InputError{"nested deeper than " + std::to_string(kMaxDepth) + " levels at " + Where(path)};
  }
  const char* writer = target == Target::Json ? "JSON" : "a property list";
  switch (KindOf(value)) {
    case Kind::Dictionary: {
      const RVDictionary& dictionary = static_cast<const RVDictionary&>(value);
      RVDictionary adapted = dictionary;
      bool changed = false;
      for (const auto& key : SortedKeys(dictionary)) {
        std::string childPath = MemberPath(path, key.first);
        if (target == Target::Json && key.first.empty()) {
          throw InputError{"an empty key in " + Where(path) +
                           ": the library's JSON writer stops at it"};
        }
        if (target != Target::Json) CheckPropertyListText(key.first, childPath);
        std::unique_ptr<RVObject> child(dictionary.ValueForKey(key.second));
        if (child == nullptr) continue;
        std::unique_ptr<RVObject> fit = Adapt(*child, target, childPath, depth + 1);
        if (fit != nullptr) {
          adapted.SetObjectForKey(*fit, key.second);
          changed = true;
        }
      }
      return changed ? std::make_unique<RVDictionary>(adapted) : nullptr;
    }
    case Kind::Array: {
      const RVArray& array = static_cast<const RVArray&>(value);
      RVArray adapted = array;
      bool changed = false;
      for (unsigned int i = 0; i < array.Count(); ++i) {
        std::unique_ptr<RVObject> child(array.ObjectAtIndex(i));
        std::unique_ptr<RVObject> fit = Adapt(*child, target, ElementPath(path, i), depth + 1);
        if (fit != nullptr) {
          adapted.SetObjectAtIndex(*fit, i);
          changed = true;
        }
      }
      return changed ? std::make_unique<RVArray>(adapted) : nullptr;
    }
    case Kind::String:
      if (target != Target::Json) {
        CheckPropertyListText(Utf8(static_cast<const RVString&>(value)), path);
      }
      return nullptr;
    case Kind::Boolean:
      // The property-list writer takes either kind of boolean; the JSON
      // writer only the library's.
      if (target == Target::Json && dynamic_cast<const RVNumber*>(&value) != nullptr) {
        return std::make_unique<RVBool>(BoolOf(value));
      }
      if (target == Target::Defaults && dynamic_cast<const RVBool*>(&value) != nullptr) {
        return std::make_unique<RVNumber>(BoolOf(value));
      }
      return nullptr;
    case Kind::Integer:
      if (target == Target::Json) {
        long number = static_cast<long>(static_cast<const RVNumber&>(value));
        if (number < INT_MIN || number > INT_MAX) {
          throw InputError{"the integer " + std::to_string(number) + " at " + Where(path) +
                           ": the library's JSON writer keeps only 32-bit integers"};
        }
      }
      return nullptr;
    case Kind::Real:
      return nullptr;
    case Kind::Date:
    case Kind::Data:
      if (target != Target::Json && KindOf(value) == Kind::Date) {
        CheckPropertyListDate(static_cast<const RVDate&>(value), path);
      }
      if (target == Target::Json) {
        throw InputError{std::string(KindOf(value) == Kind::Date ? "a date" : "data") + " at " +
                         Where(path) + ": JSON has no form for it"};
      }
      return nullptr;
    case Kind::Null:
      if (target != Target::Json) {
        throw InputError{"null at " + Where(path) + ": a property list cannot hold null"};
      }
      return nullptr;
    case Kind::Other:
      break;
  }
  throw InputError{"a value of class " + Utf8(value.ObjectsClassType()) + " at " + Where(path) +
                   ": " + writer + " cannot hold it"};
}

// A dictionary that holds no entries (a handle that holds nothing is no
// property list at all).
RVDictionary EmptyDictionary() {
  static const char kEmpty[] =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict/></plist>";
  return RVDictionary(RVData::DataWithBytes(kEmpty, sizeof kEmpty - 1));
}

// The name of the first element inside <plist>, or empty.
std::string TopElement(const std::string& xml) {
  size_t plist = xml.find("<plist");
  if (plist == std::string::npos) return std::string();
  size_t open = xml.find('<', xml.find('>', plist) + 1);
  if (open == std::string::npos) return std::string();
  size_t end = xml.find_first_of(" />", open + 1);
  return xml.substr(open + 1, end == std::string::npos ? std::string::npos : end - open - 1);
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    unsigned char u = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\t') {
      quoted += "\\t";
    } else if (c == '\r') {
      quoted += "\\r";
    } else if (u < 0x20 || u == 0x7F) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", u);
      quoted += escaped;
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string KeyLabel(const std::string& key) {
  bool plain = !key.empty();
  for (char c : key) {
    plain = plain && c != ':' && c != '"' && c != '\\' && static_cast<unsigned char>(c) > 0x20;
  }
  return plain ? key : Quoted(key);
}

std::string RealText(double value) {
  char text[64];
  auto result = std::to_chars(text, text + sizeof text, value);
  std::string shown(text, result.ptr);
  if (std::isfinite(value) && shown.find_first_of(".e") == std::string::npos) shown += ".0";
  return shown;
}

// Seconds since the reference date as ISO 8601 in UTC.
std::string DateText(const RVDate& date) {
  double seconds = date.TimeIntervalSinceRefereceDate() + 978307200.0;
  time_t whole = static_cast<time_t>(std::floor(seconds));
  struct tm parts;
  if (gmtime_r(&whole, &parts) == nullptr) return RealText(seconds);
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

std::string Count(unsigned int count, const char* one, const char* many) {
  return "(" + std::to_string(count) + " " + (count == 1 ? one : many) + ")";
}

void DescribeInto(const RVObject& value, const std::string& label, int depth, std::string& out) {
  if (depth > kMaxDepth) {
    throw InputError{"nested deeper than " + std::to_string(kMaxDepth) + " levels"};
  }
  out.append(static_cast<size_t>(depth) * 2, ' ');
  if (!label.empty()) out += label + ": ";
  switch (KindOf(value)) {
    case Kind::Dictionary: {
      const RVDictionary& dictionary = static_cast<const RVDictionary&>(value);
      auto keys = SortedKeys(dictionary);
      out += "dictionary " + Count(static_cast<unsigned int>(keys.size()), "key", "keys") + "\n";
      for (const auto& key : keys) {
        std::unique_ptr<RVObject> child(dictionary.ValueForKey(key.second));
        if (child != nullptr) DescribeInto(*child, KeyLabel(key.first), depth + 1, out);
      }
      return;
    }
    case Kind::Array: {
      const RVArray& array = static_cast<const RVArray&>(value);
      out += "array " + Count(array.Count(), "item", "items") + "\n";
      for (unsigned int i = 0; i < array.Count(); ++i) {
        std::unique_ptr<RVObject> child(array.ObjectAtIndex(i));
        DescribeInto(*child, "[" + std::to_string(i) + "]", depth + 1, out);
      }
      return;
    }
    case Kind::String:
      out += "string " + Quoted(Utf8(static_cast<const RVString&>(value))) + "\n";
      return;
    case Kind::Boolean:
      out += std::string("boolean ") + (BoolOf(value) ? "true" : "false") + "\n";
      return;
    case Kind::Integer:
      out += "number " + std::to_string(static_cast<long>(static_cast<const RVNumber&>(value))) + "\n";
      return;
    case Kind::Real:
      out += "number " + RealText(static_cast<double>(static_cast<const RVNumber&>(value))) + "\n";
      return;
    case Kind::Date:
      out += "date " + DateText(static_cast<const RVDate&>(value)) + "\n";
      return;
    case Kind::Data: {
      const RVData& data = static_cast<const RVData&>(value);
      out += "data " + Count(data.Length(), "byte", "bytes") + " " +
             Base64(data.Bytes(), data.Length()) + "\n";
      return;
    }
    case Kind::Null:
      out += "null\n";
      return;
    case Kind::Other:
      out += Utf8(value.ObjectsClassType()) + " " + Utf8(value.Description()) + "\n";
      return;
  }
}

}  // namespace

Format Recognise(const std::string& bytes) {
  size_t first = bytes.find_first_not_of(" \t\r\n");
  if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) first = bytes.find_first_not_of(" \t\r\n", 3);
  return first != std::string::npos && bytes[first] == '<' ? Format::XmlPropertyList : Format::Json;
}

RVDictionary LoadDocument(const std::string& bytes, bool forPropertyList) {
  if (Recognise(bytes) == Format::XmlPropertyList) {
    // GNUstep reads text that is not UTF-8 as no dictionary at all, and
    // only logs it.
    size_t bad = FirstNonUtf8(bytes);
    if (bad != std::string::npos) {
      throw InputError{"byte " + std::to_string(bad) + ": text that is not UTF-8"};
    }
    RVDictionary root(RVData::DataWithBytes(bytes.data(), static_cast<unsigned int>(bytes.size())));
    if (root.Ref() == nullptr) {
      std::string top = TopElement(bytes);
      if (top == "array" || top == "string" || top == "integer" || top == "real" ||
          top == "true" || top == "false" || top == "date" || top == "data") {
        throw InputError{"the top level is <" + top + ">, not a dictionary"};
      }
      throw InputError{"not a well-formed XML property list"};
    }
    return root;
  }

  CheckJson(bytes, forPropertyList);
  std::string text = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? bytes.substr(3) : bytes;
  RVJsonTranslator translator;
  std::unique_ptr<RVObject> root;
  try {
    root.reset(translator.Parse(FromUtf8(text)));
  } catch (...) {
    throw InputError{"the library's JSON reader refused the document"};
  }
  RVDictionary* dictionary = dynamic_cast<RVDictionary*>(root.get());
  if (dictionary == nullptr) throw InputError{"does not parse as JSON"};
  return *dictionary;
}

std::string ToJson(const RVDictionary& root) {
  std::unique_ptr<RVObject> adapted = Adapt(root, Target::Json, "", 0);
  const RVObject& fit = adapted != nullptr ? *adapted : static_cast<const RVObject&>(root);
  return Utf8(RVJsonTranslator().Encode(fit));
}

std::string ToPropertyList(const RVDictionary& root) {
  std::unique_ptr<RVObject> adapted = Adapt(root, Target::PropertyList, "", 0);
  RVDictionary fit = adapted != nullptr ? static_cast<RVDictionary&>(*adapted) : root;
  if (fit.Ref() == nullptr) fit = EmptyDictionary();
  RVData xml(fit);
  if (xml.Length() == 0) throw InputError{"cannot be written as a property list"};
  // The document ends without a newline; a file gets one.
  return std::string(static_cast<const char*>(xml.Bytes()), xml.Length()) + "\n";
}

std::unique_ptr<RVObject> JsonValueForPropertyList(const std::string& text) {
  CheckJson(text, true, false);
  std::unique_ptr<RVObject> value;
  try {
    value.reset(RVJsonTranslator().Parse(FromUtf8(text)));
  } catch (...) {
    throw InputError{"the library's JSON reader refused the value"};
  }
  if (value == nullptr) throw InputError{"does not parse as JSON"};
  // An empty object or array at the top is read as a handle that holds
  // nothing, which would remove the key rather than store an empty one.
  if (value->Ref() == nullptr && dynamic_cast<RVDictionary*>(value.get()) != nullptr) {
    return std::make_unique<RVDictionary>(EmptyDictionary());
  }
  if (value->Ref() == nullptr && dynamic_cast<RVArray*>(value.get()) != nullptr) {
    RVArray empty;
    empty.AddObject(RVString("placeholder"));
    empty.RemoveLastObject();
    return std::make_unique<RVArray>(empty);
  }
  std::unique_ptr<RVObject> fit = Adapt(*value, Target::Defaults, "", 0);
  return fit != nullptr ? std::move(fit) : std::move(value);
}

std::string Describe(const RVObject& value, const std::string& label) {
  std::string out;
  DescribeInto(value, label.empty() ? label : KeyLabel(label), 0, out);
  return out;
}

std::string Base64(const void* bytes, unsigned int length) {
  return RVBase64Encode(bytes, length);
}

}  // namespace cli
