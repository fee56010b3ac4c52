#include <Rovani/RVFormatError.h>

RVFormatError::RVFormatError() = default;
RVFormatError::RVFormatError(const RVFormatError& other) = default;
RVFormatError::~RVFormatError() = default;
RVFormatError& RVFormatError::operator=(const RVFormatError& other) = default;

bool RVFormatError::IsError() const { return !message.empty(); }

std::string RVFormatError::Description() const {
  if (message.empty()) return std::string();
  std::string text;
  if (line > 0) text = std::to_string(line) + ":" + std::to_string(column) + ": ";
  if (byteOffset >= 0) text += "byte " + std::to_string(byteOffset) + ": ";
  if (!keyPath.empty()) text += keyPath + ": ";
  return text + message;
}

void RVFormatError::Clear() { *this = RVFormatError(); }
