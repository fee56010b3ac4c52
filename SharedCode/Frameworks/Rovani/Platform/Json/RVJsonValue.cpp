// Every call into jsoncpp that can throw, each inside a try. See
// RVJsonValue.h for why this file is plain C++.
#include "Platform/Json/RVJsonValue.h"

#include <exception>

#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

namespace {

Json::Value* AsValue(void* value) { return static_cast<Json::Value*>(value); }
const Json::Value* AsValue(const void* value) { return static_cast<const Json::Value*>(value); }

}  // namespace

void* RVJsonParse(const char* begin, const char* end) {
  Json::Value* root = nullptr;
  try {
    root = new Json::Value(Json::nullValue);
    Json::Reader reader;
    // Nesting beyond the reader's limit throws; so does running out of memory.
    if (reader.parse(begin, end, *root, true)) return root;
  } catch (...) {
  }
  delete root;
  return nullptr;
}

void* RVJsonParseWithReason(const char* begin, const char* end, std::string* reason,
                            size_t* offset) {
  Json::Value* root = nullptr;
  *offset = 0;
  try {
    root = new Json::Value(Json::nullValue);
    Json::Reader reader;
    if (reader.parse(begin, end, *root, true)) return root;
    std::vector<Json::Reader::StructuredError> errors = reader.getStructuredErrors();
    if (!errors.empty()) {
      *reason = errors.front().message;
      *offset = static_cast<size_t>(errors.front().offset_start);
    } else {
      *reason = "not JSON";
    }
  } catch (std::exception& error) {
    *reason = error.what();
  } catch (...) {
    *reason = "not JSON";
  }
  delete root;
  return nullptr;
}

void RVJsonDelete(void* value) { delete AsValue(value); }

RVJsonDescription RVJsonDescribe(const void* opaque) {
  RVJsonDescription description;
  const Json::Value* value = AsValue(opaque);
  if (value == nullptr) return description;
  try {
    description.start = static_cast<size_t>(value->getOffsetStart());
    description.limit = static_cast<size_t>(value->getOffsetLimit());
    switch (value->type()) {
      case Json::nullValue:
        description.kind = kRVJsonNull;
        break;
      case Json::intValue:
        // asInt() throws outside the 32-bit range; the full value is kept.
        description.kind = value->isInt() ? kRVJsonInt : kRVJsonInt64;
        description.integer = value->asInt64();
        break;
      case Json::uintValue:
        description.kind = value->isUInt() ? kRVJsonUInt : kRVJsonUInt64;
        description.unsignedInteger = value->asUInt64();
        break;
      case Json::realValue:
        description.kind = kRVJsonReal;
        description.real = value->asDouble();
        break;
      case Json::stringValue: {
        description.kind = kRVJsonString;
        const char* begin = "";
        const char* end = nullptr;
        // The stored text is NUL-terminated, so begin reads as a C string.
        if (!value->getString(&begin, &end)) begin = end = "";
        description.text = begin;
        description.length = static_cast<size_t>(end - begin);
        break;
      }
      case Json::booleanValue:
        description.kind = kRVJsonBool;
        description.boolean = value->asBool();
        break;
      case Json::arrayValue:
        description.kind = kRVJsonArray;
        description.count = value->size();
        break;
      case Json::objectValue:
        description.kind = kRVJsonObject;
        description.count = value->size();
        break;
      default:
        description.kind = kRVJsonOther;
        break;
    }
  } catch (...) {
    description = RVJsonDescription();
    description.kind = kRVJsonOther;
  }
  return description;
}

void RVJsonChildren(const void* opaque, std::vector<RVJsonChild>* children) {
  children->clear();
  const Json::Value* value = AsValue(opaque);
  if (value == nullptr) return;
  try {
    if (value->type() == Json::arrayValue) {
      // Elements are kept by index, so iterating visits them in order. An
      // array built by hand may skip indices; those read as null, as indexing
      // would give.
      static const Json::Value kNull(Json::nullValue);
      children->reserve(value->size());
      Json::ArrayIndex next = 0;
      for (Json::Value::const_iterator it = value->begin(); it != value->end(); ++it) {
        for (; next < it.index(); ++next) children->push_back({nullptr, &kNull});
        children->push_back({nullptr, &*it});
        ++next;
      }
    } else if (value->type() == Json::objectValue) {
      children->reserve(value->size());
      for (Json::Value::const_iterator it = value->begin(); it != value->end(); ++it) {
        const char* end = nullptr;
        const char* name = it.memberName(&end);
        if (name == nullptr) name = end = "";
        children->push_back({name, &*it, static_cast<size_t>(end - name)});
      }
    }
  } catch (...) {
    children->clear();
  }
}

void* RVJsonNew() {
  try {
    return new Json::Value(Json::nullValue);
  } catch (...) {
    return nullptr;
  }
}

// Each setter leaves the value as it was when the new contents cannot be made.
template <typename Make>
static void Replace(void* opaque, Make make) {
  Json::Value* value = AsValue(opaque);
  if (value == nullptr) return;
  try {
    *value = make();
  } catch (...) {
  }
}

void RVJsonSetNull(void* value) {
  Replace(value, [] { return Json::Value(Json::nullValue); });
}

void RVJsonSetInt(void* value, int integer) {
  Replace(value, [&] { return Json::Value(integer); });
}

void RVJsonSetReal(void* value, double real) {
  Replace(value, [&] { return Json::Value(real); });
}

void RVJsonSetBool(void* value, bool boolean) {
  Replace(value, [&] { return Json::Value(boolean); });
}

void RVJsonSetString(void* value, const char* text) {
  Replace(value, [&] { return Json::Value(text != nullptr ? text : ""); });
}

void RVJsonSetArray(void* value) {
  Replace(value, [] { return Json::Value(Json::arrayValue); });
}

void RVJsonSetObject(void* value) {
  Replace(value, [] { return Json::Value(Json::objectValue); });
}

void* RVJsonAppendSlot(void* array) {
  Json::Value* value = AsValue(array);
  if (value == nullptr) return nullptr;
  try {
    return &value->append(Json::Value(Json::nullValue));
  } catch (...) {
    return nullptr;
  }
}

void* RVJsonMemberSlot(void* object, const char* name) {
  Json::Value* value = AsValue(object);
  if (value == nullptr) return nullptr;
  try {
    return &(*value)[name != nullptr ? name : ""];
  } catch (...) {
    return nullptr;
  }
}

bool RVJsonWriteStyled(const void* value, std::string* text) {
  if (value == nullptr) return false;
  try {
    Json::StyledWriter writer;
    *text = writer.write(*AsValue(value));
    return true;
  } catch (...) {
    text->clear();
    return false;
  }
}
