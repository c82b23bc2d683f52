#include "MqList.h"

#include <filesystem>
#include <optional>

#include "listfiles/EVBResource.h"
#include "listfiles/FileOperations.h"

namespace mq::mqlist {

namespace {

namespace fs = std::filesystem;

constexpr const char* kUsageText =
    "usage: mqlist make OUTPUT [--password PW] ENTRY...\n"
    "       mqlist dump INPUT [--password PW] DIR\n"
    "       mqlist info INPUT [--password PW]\n"
    "make: each ENTRY file becomes one entry, in order; *.rtf files are rich text, others\n"
    "      plain text in UTF-8. With --password the list is protected (M2P).\n"
    "dump: writes the entries to DIR as 000.txt (UTF-8), 001.rtf, ...\n"
    "info: the kind, the number of entries and each entry's type and length.\n"
    "Exit status: 0 done, 1 the data cannot be decoded, 2 usage or file error.\n";

struct Command {
  Text verb;
  std::vector<Text> operands;
  std::optional<Text> password;
};

int Usage(Environment& env, const std::string& problem) {
  env.err << "mqlist: " << problem << "\n" << kUsageText;
  return kUsage;
}

int Fail(Environment& env, int code, const std::string& message) {
  env.err << "mqlist: " << message << "\n";
  return code;
}

std::string U8(TextView text) { return ToUtf8(text); }

Text JoinPath(TextView dir, TextView name) {
  return (fs::path(std::u16string(dir)) / fs::path(std::u16string(name))).u16string();
}

bool EndsWithNoCase(TextView text, TextView suffix) {
  return text.size() >= suffix.size() &&
         EqualsNoCase(text.substr(text.size() - suffix.size()), suffix);
}

enum class Kind { Plain, Protected, Foreign };

Kind KindOf(std::string_view file) {
  std::string_view mark = file.substr(0, 4);
  if (mark == "M2P\r") return Kind::Protected;
  if (mark == "M2L\r" || mark == "M2U\r") return Kind::Plain;
  return Kind::Foreign;
}

const char* KindName(std::string_view file) {
  std::string_view mark = file.substr(0, 4);
  if (mark == "M2P\r") return "protected list (M2P)";
  if (mark == "M2L\r") return "plain list, compressed (M2L)";
  return "plain list, stored (M2U)";
}

// Reads INPUT and checks its kind and password; file holds the bytes on success.
int ReadList(Environment& env, const Command& cmd, Bytes& file, bool& isProtected,
             bool passwordNeeded) {
  Text error;
  if (!env.files.ReadAll(cmd.operands[0], file, error))
    return Fail(env, kUsage, "cannot read " + U8(cmd.operands[0]) + ": " + U8(error));
  const Kind kind = KindOf(file);
  if (kind == Kind::Foreign)
    return Fail(env, kUndecodable, U8(cmd.operands[0]) + " is not a Marquill list file");
  isProtected = kind == Kind::Protected;
  if (isProtected && !cmd.password && passwordNeeded)
    return Usage(env, U8(cmd.operands[0]) + " is protected: give --password");
  return kOk;
}

int Make(Environment& env, const Command& cmd) {
  if (cmd.operands.size() < 2) return Usage(env, "make needs OUTPUT and at least one ENTRY");
  if (cmd.operands.size() - 1 > static_cast<size_t>(kClipSlots))
    return Usage(env, "a list holds at most 100 entries");
  std::vector<ClipEntry> entries;
  for (size_t k = 1; k < cmd.operands.size(); ++k) {
    const Text& path = cmd.operands[k];
    Bytes data;
    Text error;
    if (!env.files.ReadAll(path, data, error))
      return Fail(env, kUsage, "cannot read " + U8(path) + ": " + U8(error));
    if (data.empty()) return Fail(env, kUsage, U8(path) + " is empty; an entry needs text");
    ClipEntry entry;
    if (EndsWithNoCase(path, u".rtf")) {
      entry = ClipEntry::Rich(data);
    } else {
      // Editors on Windows like to start UTF-8 with a byte-order mark; it is not text.
      if (data.substr(0, 3) == "\xEF\xBB\xBF") data.erase(0, 3);
      entry.text = FromUtf8(data);
      if (entry.text.empty()) return Fail(env, kUsage, U8(path) + " holds no text");
    }
    entries.push_back(std::move(entry));
  }
  const bool isProtected = cmd.password.has_value();
  const Bytes file = FileOperations::EncodeListFile(entries, env.codePage, isProtected,
                                                    cmd.password.value_or(Text()));
  Text error;
  if (!env.files.WriteAllAtomic(cmd.operands[0], file, error))
    return Fail(env, kUsage, "cannot write " + U8(cmd.operands[0]) + ": " + U8(error));
  return kOk;
}

int Dump(Environment& env, const Command& cmd) {
  if (cmd.operands.size() != 2) return Usage(env, "dump needs INPUT and DIR");
  Bytes file;
  bool isProtected = false;
  if (int rc = ReadList(env, cmd, file, isProtected, true); rc != kOk) return rc;
  std::vector<ClipEntry> entries;
  if (!FileOperations::DecodeListFile(file, env.codePage, isProtected,
                                      cmd.password.value_or(Text()), entries))
    return Fail(env, kUndecodable,
                isProtected ? "wrong password, or the file is damaged"
                            : U8(cmd.operands[0]) + " is damaged");
  // "Open as New" takes no more entries than the clip list holds.
  if (entries.size() > static_cast<size_t>(kClipSlots)) entries.resize(kClipSlots);

  const Text& dir = cmd.operands[1];
  std::error_code ec;
  fs::create_directories(fs::path(std::u16string(dir)), ec);
  if (!env.files.IsDirectory(dir))
    return Fail(env, kUsage, "cannot create the folder " + U8(dir));
  for (size_t k = 0; k < entries.size(); ++k) {
    const bool rich = entries[k].format == kFormatRich;
    const Text name = Format000(static_cast<long long>(k)) + (rich ? u".rtf" : u".txt");
    const Bytes data = rich ? entries[k].rtf : ToUtf8(entries[k].text);
    Text error;
    const Text path = JoinPath(dir, name);
    if (!env.files.WriteAllAtomic(path, data, error))
      return Fail(env, kUsage, "cannot write " + U8(path) + ": " + U8(error));
  }
  return kOk;
}

int Info(Environment& env, const Command& cmd) {
  if (cmd.operands.size() != 1) return Usage(env, "info needs INPUT");
  Bytes file;
  bool isProtected = false;
  if (int rc = ReadList(env, cmd, file, isProtected, false); rc != kOk) return rc;
  env.out << "kind: " << KindName(file) << "\n";
  if (isProtected && !cmd.password) {
    env.out << "entries: unknown without --password\n";
    return kOk;
  }
  EVBResource resource;
  if (!FileOperations::OpenListResource(file, env.codePage, isProtected,
                                        cmd.password.value_or(Text()), resource))
    return Fail(env, kUndecodable,
                isProtected ? "wrong password, or the file is damaged"
                            : U8(cmd.operands[0]) + " is damaged");
  env.out << "entries: " << resource.strings().size() << "\n";
  for (const auto& record : resource.strings()) {
    const int type = FileOperations::EntryTypeOfId(record.id);
    const char* what = type == kFormatRich                      ? "rich text"
                       : type == FileOperations::kTypeUnicode ? "Unicode text"
                                                              : "text";
    env.out << record.id << "  type " << type << " (" << what << ")  " << record.data.size()
            << " bytes\n";
  }
  return kOk;
}

}  // namespace

int Run(const std::vector<Text>& args, Environment& env) {
  if (args.size() == 1 && (args[0] == u"--help" || args[0] == u"-h")) {
    env.out << kUsageText;
    return kOk;
  }
  if (args.empty()) return Usage(env, "no command");
  Command cmd;
  cmd.verb = args[0];
  for (size_t k = 1; k < args.size(); ++k) {
    if (args[k] == u"--password") {
      if (k + 1 >= args.size()) return Usage(env, "--password needs a value");
      cmd.password = args[++k];
    } else if (StartsWith(args[k], u"--password=")) {
      cmd.password = args[k].substr(11);
    } else {
      cmd.operands.push_back(args[k]);
    }
  }
  if (cmd.password && cmd.password->empty()) return Usage(env, "the password cannot be empty");
  if (cmd.verb == u"make") return Make(env, cmd);
  if (cmd.verb == u"dump") return Dump(env, cmd);
  if (cmd.verb == u"info") return Info(env, cmd);
  return Usage(env, "unknown command " + U8(cmd.verb));
}

}  // namespace mq::mqlist
