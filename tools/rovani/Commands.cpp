// The commands of the rovani program.
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <set>

#include "Cli.h"
#include "Commands.h"

namespace cli {

namespace {

// The words of a command line split into options and operands. "--" ends
// the options; "-" alone is an operand (standard input or output).
struct Parsed {
  Words operands;
  std::vector<std::pair<std::string, std::string>> options;

  const std::string* Option(const std::string& name) const {
    const std::string* found = nullptr;
    for (const auto& option : options) {
      if (option.first == name) found = &option.second;
    }
    return found;
  }
};

// valued: options that take the next word as their value; aliases map a
// short spelling to its long one.
Parsed ParseWords(const Words& args, const std::set<std::string>& valued,
                  const std::set<std::string>& flags = {},
                  const std::vector<std::pair<std::string, std::string>>& aliases = {}) {
  Parsed parsed;
  for (size_t i = 0; i < args.size(); ++i) {
    std::string word = args[i];
    if (word == "--") {
      parsed.operands.insert(parsed.operands.end(), args.begin() + i + 1, args.end());
      break;
    }
    if (word.size() < 2 || word[0] != '-') {
      parsed.operands.push_back(word);
      continue;
    }
    if (word == "--help" || word == "-h") throw HelpRequested{};
    std::string value;
    bool hasValue = false;
    size_t equals = word.find('=');
    if (word.compare(0, 2, "--") == 0 && equals != std::string::npos) {
      value = word.substr(equals + 1);
      word = word.substr(0, equals);
      hasValue = true;
    }
    for (const auto& alias : aliases) {
      if (word == alias.first) word = alias.second;
    }
    if (valued.count(word) != 0) {
      if (!hasValue) {
        if (i + 1 >= args.size()) throw UsageError{"option '" + word + "' needs a value"};
        value = args[++i];
      }
      parsed.options.emplace_back(word, value);
    } else if (flags.count(word) != 0 && !hasValue) {
      parsed.options.emplace_back(word, "");
    } else {
      throw UsageError{"unknown option '" + args[i] + "'"};
    }
  }
  return parsed;
}

void ExpectOperands(const Parsed& parsed, size_t least, size_t most) {
  if (parsed.operands.size() < least) throw UsageError{"missing operand"};
  if (parsed.operands.size() > most) {
    throw UsageError{"unexpected operand '" + parsed.operands[most] + "'"};
  }
}

// Runs work, putting the file's name before any input error it throws.
template <typename Work>
auto About(const std::string& path, Work work) -> decltype(work()) {
  try {
    return work();
  } catch (InputError& error) {
    throw InputError{DisplayName(path) + ": " + error.message};
  }
}

// A document's bytes, read and parsed. A place in text follows the file's
// name as compilers write it: FILE:LINE:COLUMN: message.
Document Load(const std::string& path) {
  std::string bytes = About(path, [&] { return ReadInput(path); });
  try {
    return ReadDocument(bytes);
  } catch (InputError& error) {
    bool place = !error.message.empty() && error.message[0] >= '1' && error.message[0] <= '9';
    throw InputError{DisplayName(path) + (place ? ":" : ": ") + error.message};
  }
}

void Write(const std::string& path, const std::string& bytes) {
  About(path, [&] { WriteOutput(path, bytes); });
}

// ---- convert, print, lint

int Convert(const Words& args) {
  Parsed parsed = ParseWords(args, {"--output"}, {"--dates-as-text", "--data-as-base64"},
                             {{"-o", "--output"}});
  ExpectOperands(parsed, 2, 2);
  const std::string& name = parsed.operands[0];
  Format format;
  if (name == "json") format = Format::Json;
  else if (name == "xml") format = Format::XmlPropertyList;
  else if (name == "binary") format = Format::BinaryPropertyList;
  else throw UsageError{"unknown format '" + name + "' (binary, xml or json)"};
  JsonOptions options;
  options.datesAsText = parsed.Option("--dates-as-text") != nullptr;
  options.dataAsBase64 = parsed.Option("--data-as-base64") != nullptr;
  if (format != Format::Json && (options.datesAsText || options.dataAsBase64)) {
    throw UsageError{"--dates-as-text and --data-as-base64 are for json only"};
  }
  const std::string* output = parsed.Option("--output");
  std::string out = output != nullptr ? *output : "-";
  const std::string& in = parsed.operands[1];
  Document document = Load(in);
  std::string converted = About(in, [&] { return WriteDocument(*document.root, format, options); });
  Write(out, converted);
  return 0;
}

int Print(const Words& args) {
  Parsed parsed = ParseWords(args, {});
  ExpectOperands(parsed, 1, 1);
  Document document = Load(parsed.operands[0]);
  Write("-", Describe(*document.root));
  return 0;
}

int Lint(const Words& args) {
  Parsed parsed = ParseWords(args, {});
  ExpectOperands(parsed, 1, SIZE_MAX);
  int status = 0;
  for (const std::string& path : parsed.operands) {
    // The error's message starts with the file's name and place.
    std::string verdict = DisplayName(path) + ": OK";
    try {
      Load(path);
    } catch (InputError& error) {
      verdict = error.message;
      status = 1;
    }
    Write("-", verdict + "\n");
  }
  return status;
}

// ---- defaults

std::string AllUsersDirectory() {
  const char* configured = std::getenv("ROVANI_ALL_USERS_DEFAULTS_DIR");
  return configured != nullptr && configured[0] != '\0' ? configured : "/var/lib/rovani/defaults";
}

bool HasKey(const RVDictionary& domain, const std::string& key) {
  return domain.ObjectsClassTypeForKey(FromUtf8(key)).Length() != 0;
}

RVObject* Typed(const std::string& type, const std::string& text) {
  if (type == "-string") return new RVString(FromUtf8(text));
  if (type == "-int") {
    errno = 0;
    char* end = nullptr;
    long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || errno == ERANGE) {
      throw InputError{"'" + text + "' is not an integer"};
    }
    return new RVNumber(value);
  }
  if (type == "-float") {
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || errno == ERANGE || !std::isfinite(value)) {
      throw InputError{"'" + text + "' is not a finite number"};
    }
    return new RVNumber(value);
  }
  if (type == "-bool") {
    std::string word;
    for (char c : text) word += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    // The platform's boolean numbers: a property list keeps them as booleans.
    if (word == "true" || word == "yes" || word == "1") return new RVNumber(true);
    if (word == "false" || word == "no" || word == "0") return new RVNumber(false);
    throw InputError{"'" + text + "' is not a boolean (true, false, yes, no, 1 or 0)"};
  }
  return ParseJsonValue(text).release();  // -json
}

int Defaults(const Words& args) {
  static const std::set<std::string> kTypes = {"-string", "-int", "-float", "-bool", "-json"};
  if (args.empty()) throw UsageError{"missing action (read, write or delete)"};
  if (args[0] == "--help" || args[0] == "-h") throw HelpRequested{};
  const std::string& action = args[0];
  if (action != "read" && action != "write" && action != "delete") {
    throw UsageError{"unknown action '" + action + "' (read, write or delete)"};
  }
  bool allUsers = false;
  Words operands;
  std::string type = "-string";
  bool typed = false, optionsEnded = false;
  for (size_t i = 1; i < args.size(); ++i) {
    const std::string& word = args[i];
    // The value itself is taken as it is, whatever it starts with.
    if (action == "write" && operands.size() == 2) {
      if (!typed && !optionsEnded && kTypes.count(word) != 0) {
        type = word;
        typed = true;
        continue;
      }
      operands.push_back(word);
      continue;
    }
    if (!optionsEnded && word == "--") {
      optionsEnded = true;
    } else if (!optionsEnded && (word == "--help" || word == "-h")) {
      throw HelpRequested{};
    } else if (!optionsEnded && word == "--all-users") {
      allUsers = true;
    } else if (!optionsEnded && word.size() > 1 && word[0] == '-') {
      throw UsageError{"unknown option '" + word + "'"};
    } else {
      operands.push_back(word);
    }
  }
  size_t most = action == "write" ? 3 : 2;
  if (operands.empty()) throw UsageError{"missing DOMAIN"};
  if (operands.size() > most) throw UsageError{"unexpected operand '" + operands[most] + "'"};
  if (action == "write" && operands.size() < 3) {
    throw UsageError{operands.size() < 2 ? "missing KEY" : "missing VALUE"};
  }
  const std::string& domainName = operands[0];
  if (domainName.empty() || domainName == "." || domainName == ".." ||
      domainName.find('/') != std::string::npos) {
    throw UsageError{"'" + domainName + "' cannot name a domain"};
  }

  RVUserDefaults store(FromUtf8(domainName), allUsers);
  RVDictionary domain = store.DictionaryRepresentation();
  auto synchronize = [&] {
    if (allUsers && !store.Synchronize()) {
      throw InputError{"cannot write the all-users store in " + AllUsersDirectory()};
    }
  };

  if (action == "read") {
    if (operands.size() == 1) {
      Write("-", Describe(domain));
      return 0;
    }
    const std::string& key = operands[1];
    std::unique_ptr<RVObject> value(domain.ValueForKey(FromUtf8(key)));
    if (value == nullptr) throw InputError{domainName + " has no key '" + key + "'"};
    Write("-", Describe(*value, key));
    return 0;
  }

  if (action == "write") {
    const std::string& key = operands[1];
    std::unique_ptr<RVObject> value(About(key, [&] {
      std::unique_ptr<RVObject> typed(Typed(type, operands[2]));
      // The store keeps property lists: the writer refuses (with the key
      // path) what it cannot hold, such as null.
      WriteDocument(*typed, Format::XmlPropertyList);
      return typed.release();
    }));
    store.SetObjectForKey(*value, FromUtf8(key));
    synchronize();
    return 0;
  }

  // delete: one key, or every key of the domain.
  Words keys;
  if (operands.size() == 2) {
    if (!HasKey(domain, operands[1])) {
      throw InputError{domainName + " has no key '" + operands[1] + "'"};
    }
    keys.push_back(operands[1]);
  } else {
    RVArray all = domain.KeyEnumerator().AllObjects();
    for (unsigned int i = 0; i < all.Count(); ++i) keys.push_back(Utf8(all.StringAtIndex(i)));
  }
  for (const std::string& key : keys) {
    if (allUsers) {
      store.RemoveObjectForKey(FromUtf8(key));
    } else {
      store.SetObjectForKey(RVObject(), FromUtf8(key));  // an empty value removes the key
    }
  }
  synchronize();
  return 0;
}

// ---- base64, hash, uuid, date

// Strict standard Base64: the alphabet, "=" padding at the end only, white
// space skipped. The library's decoder keeps counting rules of its own
// that do not give the original bytes back, so decoding is done here.
std::string DecodeBase64(const std::string& text) {
  std::string bytes;
  unsigned int bits = 0, held = 0;
  size_t padding = 0, characters = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == ' ' || c == '\n' || c == '\r' || c == '\t') continue;
    int value;
    if (c >= 'A' && c <= 'Z') value = c - 'A';
    else if (c >= 'a' && c <= 'z') value = c - 'a' + 26;
    else if (c >= '0' && c <= '9') value = c - '0' + 52;
    else if (c == '+') value = 62;
    else if (c == '/') value = 63;
    else if (c == '=') value = -1;
    else throw InputError{"invalid Base64 character at offset " + std::to_string(i)};
    if (value < 0) {
      ++padding;
      ++characters;
      continue;
    }
    if (padding > 0) throw InputError{"Base64 text after '=' padding at offset " + std::to_string(i)};
    ++characters;
    bits = (bits << 6) | static_cast<unsigned int>(value);
    held += 6;
    if (held >= 8) {
      held -= 8;
      bytes += static_cast<char>((bits >> held) & 0xFF);
    }
  }
  size_t data = characters - padding;
  if (padding > 2 || data % 4 == 1 || (padding > 0 && characters % 4 != 0)) {
    throw InputError{"truncated Base64 text"};
  }
  return bytes;
}

int Base64Command(const Words& args) {
  Parsed parsed = ParseWords(args, {});
  ExpectOperands(parsed, 1, 2);
  const std::string& action = parsed.operands[0];
  if (action != "encode" && action != "decode") {
    throw UsageError{"unknown action '" + action + "' (encode or decode)"};
  }
  std::string in = parsed.operands.size() > 1 ? parsed.operands[1] : "-";
  std::string bytes = About(in, [&] { return ReadInput(in); });
  if (action == "encode") {
    Write("-", Base64(bytes.data(), static_cast<unsigned int>(bytes.size())) + "\n");
  } else {
    Write("-", About(in, [&] { return DecodeBase64(bytes); }));
  }
  return 0;
}

int Hash(const Words& args) {
  Parsed parsed = ParseWords(args, {});
  ExpectOperands(parsed, 1, SIZE_MAX);
  std::string out;
  for (const std::string& text : parsed.operands) {
    out += Utf8(RVUtilities::HashAsString(FromUtf8(text))) + "  " + text + "\n";
  }
  Write("-", out);
  return 0;
}

int Uuid(const Words& args) {
  Parsed parsed = ParseWords(args, {"--count"}, {}, {{"-n", "--count"}});
  ExpectOperands(parsed, 0, 0);
  long count = 1;
  if (const std::string* given = parsed.Option("--count")) {
    char* end = nullptr;
    count = std::strtol(given->c_str(), &end, 10);
    if (given->empty() || *end != '\0' || count < 1 || count > 100000) {
      throw UsageError{"COUNT must be a whole number from 1 to 100000, not '" + *given + "'"};
    }
  }
  std::string out;
  for (long i = 0; i < count; ++i) {
    RVAutoreleasePool pool;  // each UUID's text is autoreleased
    out += Utf8(RVUtilities::CreateUUID()) + "\n";
  }
  Write("-", out);
  return 0;
}

// Reads text with pattern, and only when the date written back in the
// same pattern is the text again: the platform's parsing is lenient enough
// to read 11-23-2026 as a year 11 date in "yyyy-MM-dd".
RVDate ReadDate(const std::string& text, const RVString& pattern) {
  RVDateFormatter formatter = RVDateFormatter::DateFormatterUsingDateFormat(pattern);
  RVDate date = formatter.DateFromString(FromUtf8(text));
  if (date.IsEmpty()) return date;
  std::string written = Utf8(formatter.StringFromDate(date));
  std::string read = text;
  // The formatter also reads "/" where the pattern has "-".
  for (char& c : read) c = c == '/' ? '-' : c;
  return written == text || written == read ? date : RVDate();
}

int Date(const Words& args) {
  Parsed parsed = ParseWords(args, {"--format"}, {}, {{"-f", "--format"}});
  ExpectOperands(parsed, 0, 1);
  const std::string* format = parsed.Option("--format");
  if (format != nullptr && format->empty()) throw UsageError{"the format is empty"};
  RVString pattern = FromUtf8(format != nullptr ? *format : "yyyy-MM-dd HH:mm:ss");
  RVDate date = RVDate::Now();
  if (!parsed.operands.empty()) {
    const std::string& text = parsed.operands[0];
    std::vector<RVString> patterns;
    if (format != nullptr) patterns.push_back(pattern);
    for (const char* known : {"yyyy-MM-dd HH:mm:ss", "yyyy-MM-dd'T'HH:mm:ss", "yyyy-MM-dd HH:mm",
                              "yyyy-MM-dd"}) {
      patterns.push_back(known);
    }
    patterns.push_back(RVDateFormat::MMddyyyyHHmmssSSSDateFormat());
    patterns.push_back("MM-dd-yyyy HH:mm:ss");
    patterns.push_back(RVDateFormat::MMddyyyyDateFormat());
    date = RVDate();
    for (const RVString& candidate : patterns) {
      date = ReadDate(text, candidate);
      if (!date.IsEmpty()) break;
    }
    if (date.IsEmpty()) {
      throw InputError{"'" + text +
                       "' is no date (try yyyy-MM-dd, yyyy-MM-dd HH:mm:ss or MM-dd-yyyy)"};
    }
  }
  Write("-", Utf8(RVDateFormatter::DateFormatterUsingDateFormat(pattern).StringFromDate(date)) +
                 "\n");
  return 0;
}

}  // namespace

const Command kCommands[] = {
    {"convert", Convert, "binary|xml|json IN [-o OUT] [--dates-as-text] [--data-as-base64]",
     "convert a settings document to binary, XML or JSON",
     "Reads IN, a property list (XML, binary or OpenStep) or JSON, told apart\n"
     "by its content, and writes it in the format named to OUT (standard\n"
     "output by default). \"-\" means standard input or output. Every value\n"
     "comes through exactly: booleans stay booleans, integers of up to 64 bits\n"
     "(signed or unsigned) keep their value, reals reals, and text keeps every\n"
     "character. What the target cannot hold is refused with its key path\n"
     "(keys joined by \".\", array elements by index): in a property list null,\n"
     "control characters other than tab, LF and CR, U+FFFE and U+FFFF, dates\n"
     "outside the years 1 to 9999; in JSON dates and data, unless asked for as\n"
     "text. A document that does not parse is refused with its place:\n"
     "FILE:LINE:COLUMN for text, FILE: byte N for a binary list.\n"
     "\n"
     "  -o, --output OUT     write to OUT instead of standard output\n"
     "  --dates-as-text      json: dates as ISO 8601 text (2026-11-25T10:30:05Z)\n"
     "  --data-as-base64     json: data as Base64 text\n"
     "Both are one way: the text reads back as strings, not as dates or data.\n"
     "\n"
     "Example: rovani convert binary examples/settings.json -o settings.plist\n"
     "Error:   rovani convert: bad.json:2:7: Missing ':' after object member name\n"},
    {"print", Print, "IN", "print a settings document as an indented tree",
     "Prints the tree of IN (any property list or JSON, \"-\" for standard\n"
     "input), one value per line with its kind, keys sorted.\n"
     "\n"
     "Example: rovani print examples/settings.plist\n"},
    {"lint", Lint, "IN...", "check that settings documents parse",
     "Prints \"FILE: OK\" or \"FILE: <where>: <why>\" for each file (any property\n"
     "list or JSON); the exit status is 1 when any failed.\n"
     "\n"
     "Example: rovani lint examples/settings.json examples/settings.plist\n"},
    {"defaults", Defaults, "read|write|delete [--all-users] DOMAIN [KEY [TYPE] VALUE]",
     "read and change an application's user defaults",
     "DOMAIN is an application identifier such as com.example.app.\n"
     "  read DOMAIN          the whole domain, printed as print does\n"
     "  read DOMAIN KEY      one value\n"
     "  write DOMAIN KEY [TYPE] VALUE\n"
     "                       TYPE is -string (the default), -int, -float, -bool\n"
     "                       or -json\n"
     "  delete DOMAIN [KEY]  one key, or every key of the domain\n"
     "Reading shows the current user's values over every user's. write and\n"
     "delete change the current user's store, or with --all-users the store\n"
     "for every user of this machine ($ROVANI_ALL_USERS_DEFAULTS_DIR, else\n"
     "/var/lib/rovani/defaults).\n"
     "\n"
     "Example: rovani defaults write com.example.app retries -int 3\n"},
    {"base64", Base64Command, "encode|decode [IN]", "encode or decode standard Base64",
     "Reads IN (standard input when absent or \"-\") and writes standard Base64\n"
     "text, or the decoded bytes, to standard output.\n"
     "\n"
     "Example: echo -n Man | rovani base64 encode\n"},
    {"hash", Hash, "TEXT...", "print the eight-digit short hash of each text",
     "Prints, for each TEXT, the first four bytes of the MD5 digest of its\n"
     "UTF-8 bytes as eight hexadecimal digits, then the text.\n"
     "\n"
     "Example: rovani hash abc\n"},
    {"uuid", Uuid, "[-n COUNT]", "print new random UUIDs",
     "  -n, --count COUNT   print COUNT UUIDs (default 1)\n"
     "\n"
     "Example: rovani uuid -n 3\n"},
    {"date", Date, "[--format PATTERN] [TEXT]", "print the date now, or TEXT read as a date",
     "Prints the date in PATTERN (default yyyy-MM-dd HH:mm:ss) in the system\n"
     "time zone (GNUSTEP_TZ). TEXT is read in PATTERN, yyyy-MM-dd HH:mm:ss,\n"
     "yyyy-MM-ddTHH:mm:ss, yyyy-MM-dd HH:mm, yyyy-MM-dd, MM-dd-yyyy HH:mm:ss.SSS,\n"
     "MM-dd-yyyy HH:mm:ss or MM-dd-yyyy (\"/\" is read as \"-\").\n"
     "\n"
     "  -f, --format PATTERN   the output pattern\n"
     "\n"
     "Example: rovani date --format dd-MM-yyyy 2026-11-23\n"},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

}  // namespace cli
