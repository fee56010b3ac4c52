#import <Foundation/Foundation.h>

#include <algorithm>

#include "support/LogCapture.h"

namespace {

std::vector<std::string> gLines;
NSLog_printf_handler* gPrevious = nullptr;

void Collect(NSString* message) {
  std::string line = [message UTF8String] ? [message UTF8String] : "";
  size_t prefixEnd = line.find("] ");
  if (prefixEnd != std::string::npos) line.erase(0, prefixEnd + 2);
  while (!line.empty() && line.back() == '\n') line.pop_back();
  gLines.push_back(line);
}

}  // namespace

LogCapture::LogCapture() {
  gLines.clear();
  gPrevious = _NSLog_printf_handler;
  _NSLog_printf_handler = Collect;
}

LogCapture::~LogCapture() { _NSLog_printf_handler = gPrevious; }

const std::vector<std::string>& LogCapture::Lines() const { return gLines; }

int LogCapture::Count(const std::string& text) const {
  return static_cast<int>(std::count(gLines.begin(), gLines.end(), text));
}
