// Documents of any format as the commands see them: read into a tree with
// the format they came in, written back in a format. A thin layer over
// Documents.cpp until the document layer offers this itself.
#ifndef ROVANI_TOOLS_DOCUMENTBRIDGE_H
#define ROVANI_TOOLS_DOCUMENTBRIDGE_H

#include <memory>
#include <string>

#include "Cli.h"

namespace cli {

struct Document {
  std::unique_ptr<RVObject> root;
  Format format;
};
Document ReadDocument(const std::string& bytes);
struct JsonOptions {
  bool datesAsText = false;
  bool dataAsBase64 = false;
};
std::string WriteDocument(const RVObject& root, Format format, const JsonOptions& options = {});
std::unique_ptr<RVObject> ParseJsonValue(const std::string& text);

}  // namespace cli

#endif
