// defaults export and import: a domain's values as an XML property list,
// and a document's values into a store, for moving settings between
// machines or keeping them with a project.
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "KeyPath.h"
#include "Platform/Preferences/RVAllUsersDirectory.h"

namespace cli {

namespace {

struct Transfer {
  bool allUsers = false;
  std::string domain, file;
};

Transfer ParseTransfer(const Words& args) {
  Transfer transfer;
  Words operands;
  bool optionsEnded = false;
  for (const std::string& word : args) {
    if (optionsEnded || word.size() < 2 || word[0] != '-') {
      operands.push_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else if (word == "--help" || word == "-h") {
      throw HelpRequested{};
    } else if (word == "--all-users") {
      transfer.allUsers = true;
    } else {
      throw UsageError{"unknown option '" + word + "'"};
    }
  }
  if (operands.empty()) throw UsageError{"missing DOMAIN"};
  if (operands.size() < 2) throw UsageError{"missing FILE (\"-\" for standard input or output)"};
  if (operands.size() > 2) throw UsageError{"unexpected operand '" + operands[2] + "'"};
  CheckDomainName(operands[0]);
  transfer.domain = operands[0];
  transfer.file = operands[1];
  return transfer;
}

}  // namespace

void CheckDomainName(const std::string& name) {
  if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
    throw UsageError{"'" + name + "' cannot name a domain"};
  }
}

int DefaultsExport(const Words& args) {
  Transfer transfer = ParseTransfer(args);
  // A dictionary that holds no entries, not a handle that holds nothing.
  RVDictionary values = static_cast<const RVDictionary&>(*ParseJsonValue("{}"));
  if (transfer.allUsers) {
    // That store alone: its file, which the library alone writes. A domain
    // never written has none.
    std::string path = RVAllUsersDefaultsDirectory() + "/" + transfer.domain + ".plist";
    if (access(path.c_str(), F_OK) == 0 || errno != ENOENT) {
      Document document = WithPrefix(path, [&] { return ReadDocument(ReadInput(path)); });
      if (KindOf(*document.root) != Kind::Dictionary) {
        throw InputError{path + ": the top level is not a dictionary"};
      }
      values = static_cast<const RVDictionary&>(*document.root);
    }
  } else {
    values = RVUserDefaults(FromUtf8(transfer.domain), false).DictionaryRepresentation();
  }
  std::string xml =
      WithPrefix(transfer.domain, [&] { return WriteDocument(values, Format::XmlPropertyList); });
  if (transfer.file == "-") {
    WriteOutput("-", xml);
  } else {
    WithPrefix(transfer.file, [&] { ReplaceFile(transfer.file, xml); });
  }
  return 0;
}

int DefaultsImport(const Words& args) {
  Transfer transfer = ParseTransfer(args);
  std::string name = DisplayName(transfer.file);
  Document document = WithPrefix(name, [&] { return ReadDocument(ReadInput(transfer.file)); });
  if (KindOf(*document.root) != Kind::Dictionary) {
    throw InputError{name + ": the top level is not a dictionary"};
  }
  // Every value goes through the property-list writer and reader first:
  // what a store cannot hold is refused with its key path before any key
  // is written, and booleans come back as the ones the stores keep.
  RVDictionary values = WithPrefix(name, [&] {
    Document checked = ReadDocument(WriteDocument(*document.root, Format::XmlPropertyList));
    return RVDictionary(static_cast<const RVDictionary&>(*checked.root));
  });
  RVUserDefaults store(FromUtf8(transfer.domain), transfer.allUsers);
  RVArray keys = values.KeyEnumerator().AllObjects();
  for (unsigned int i = 0; i < keys.Count(); ++i) {
    RVString key = keys.StringAtIndex(i);
    std::unique_ptr<RVObject> value(values.ValueForKey(key));
    if (value != nullptr) store.SetObjectForKey(*value, key);
  }
  if (transfer.allUsers && !store.Synchronize()) {
    throw InputError{"cannot write the all-users store in " + RVAllUsersDefaultsDirectory()};
  }
  return 0;
}

}  // namespace cli
