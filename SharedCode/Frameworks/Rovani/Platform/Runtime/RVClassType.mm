#import <Foundation/Foundation.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "Platform/Runtime/RVClassType.h"

// Class types are asked for on every typed look-up, and the answer for a
// dynamic type never changes, so each is computed once. The fast path is a
// small lock-free table keyed by the address of the type's name; a miss
// computes the text under a lock and interns it by content, so that two
// types with the same class type share one string object and equal class
// types compare equal by address.
namespace {

constexpr size_t kClassTypeSlots = 128;

struct ClassTypeSlot {
  std::atomic<const char*> key{nullptr};
  NSString* text = nil;
};

ClassTypeSlot gClassTypeSlots[kClassTypeSlots];
std::mutex gClassTypeMutex;

std::unordered_map<std::string, NSString*>& InternedClassTypes() {
  // Deliberately never destroyed: the strings live as long as the process.
  static auto* interned = new std::unordered_map<std::string, NSString*>();
  return *interned;
}

std::string ClassTypeFromTypeName(const char* name) {
  // Exactly one leading character is dropped, whatever the length prefix:
  // "12RVDictionary" becomes "2RVDictionary".
  std::string result = name[0] ? name + 1 : "";
  // Names of the form "class X" keep only their last word.
  size_t blank = result.rfind(' ');
  if (blank != std::string::npos) result = result.substr(blank + 1);
  return result;
}

NSString* InternClassType(const char* typeName) {
  std::string text = ClassTypeFromTypeName(typeName);
  auto& interned = InternedClassTypes();
  auto found = interned.find(text);
  if (found != interned.end()) return found->second;
  NSString* made = [[NSString alloc] initWithUTF8String:text.c_str()];
  interned.emplace(text, made);
  return made;
}

size_t SlotFor(const char* key) {
  return (reinterpret_cast<uintptr_t>(key) >> 3) % kClassTypeSlots;
}

}  // namespace

NSString* RVClassTypeText(const std::type_info& type) {
  const char* key = type.name();
  size_t start = SlotFor(key);
  for (size_t i = 0; i < kClassTypeSlots; ++i) {
    ClassTypeSlot& slot = gClassTypeSlots[(start + i) % kClassTypeSlots];
    const char* seen = slot.key.load(std::memory_order_acquire);
    if (seen == key) return slot.text;
    if (seen == nullptr) break;
  }

  std::lock_guard<std::mutex> lock(gClassTypeMutex);
  NSString* text = InternClassType(key);
  for (size_t i = 0; i < kClassTypeSlots; ++i) {
    ClassTypeSlot& slot = gClassTypeSlots[(start + i) % kClassTypeSlots];
    const char* seen = slot.key.load(std::memory_order_relaxed);
    if (seen == key) break;
    if (seen == nullptr) {
      slot.text = text;
      slot.key.store(key, std::memory_order_release);
      break;
    }
  }
  // A full table only costs the look-up under the lock next time.
  return text;
}
