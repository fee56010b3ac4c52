// The document calls over LoadDocument, ToJson and ToPropertyList: JSON
// and XML property lists, any root for writing (a root that is not a
// dictionary goes through a one-key wrapper and is cut out of the text).
#include "DocumentBridge.h"

namespace cli {

namespace {

const char kWrapKey[] = "rovani-bridge-value";

// The text between the wrapper key's value and the wrapper's end, each
// line shifted left by indent.
std::string Unwrap(const std::string& text, const std::string& start, const std::string& end,
                   size_t indent) {
  size_t from = text.find(start);
  size_t to = text.rfind(end);
  if (from == std::string::npos || to == std::string::npos || to < from) {
    throw InputError{"cannot be written in this format"};
  }
  std::string inner = text.substr(from + start.size(), to - from - start.size());
  std::string out;
  size_t at = 0;
  while (at < inner.size()) {
    size_t line = inner.find('\n', at);
    std::string piece =
        inner.substr(at, line == std::string::npos ? std::string::npos : line - at + 1);
    size_t skip = 0;
    while (skip < indent && skip < piece.size() && piece[skip] == ' ') ++skip;
    out += piece.substr(skip);
    if (line == std::string::npos) break;
    at = line + 1;
  }
  return out;
}

}  // namespace

Document ReadDocument(const std::string& bytes) {
  Format format = Recognise(bytes);
  return Document{std::make_unique<RVDictionary>(LoadDocument(bytes, false)), format};
}

std::string WriteDocument(const RVObject& root, Format format, const JsonOptions&) {
  if (format != Format::Json && format != Format::XmlPropertyList) {
    throw InputError{"this format cannot be written yet"};
  }
  if (const RVDictionary* dictionary = dynamic_cast<const RVDictionary*>(&root)) {
    return format == Format::Json ? ToJson(*dictionary) : ToPropertyList(*dictionary);
  }
  RVDictionary wrapper;
  wrapper.SetObjectForKey(root, FromUtf8(kWrapKey));
  if (format == Format::Json) {
    return Unwrap(ToJson(wrapper), std::string("\"") + kWrapKey + "\" : ", "\n}", 3) + "\n";
  }
  std::string xml = ToPropertyList(wrapper);
  std::string head = xml.substr(0, xml.find("<dict>"));
  return head + Unwrap(xml, std::string("<key>") + kWrapKey + "</key>\n", "</dict>", 4) +
         "</plist>\n";
}

std::unique_ptr<RVObject> ParseJsonValue(const std::string& text) {
  return JsonValueForPropertyList(text);
}

}  // namespace cli
