// Drives the built mqlist binary as a user's script would, on the files of this system.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "listfiles/FileOperations.h"

namespace mq {
namespace {

namespace fs = std::filesystem;

class MqlistTool : public ::testing::Test {
 protected:
  void SetUp() override {
    // The tool sits at the top of the build tree, two levels above this test binary.
    tool = fs::canonical("/proc/self/exe").parent_path().parent_path().parent_path() / "mqlist";
    ASSERT_TRUE(fs::exists(tool)) << "build the mqlist target first: " << tool;
    dir = fs::temp_directory_path() / ("mqlist-test-" + std::to_string(getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
  }
  void TearDown() override { fs::remove_all(dir); }

  // Runs the tool in dir; returns its exit status, stdout in out.
  int Run(const std::string& args, std::string* out = nullptr) {
    const std::string cmd = "cd '" + dir.string() + "' && '" + tool.string() + "' " + args +
                            " >stdout.txt 2>stderr.txt";
    const int status = std::system(cmd.c_str());
    if (out) *out = Read("stdout.txt");
    errLines = 0;
    for (char c : Read("stderr.txt")) errLines += c == '\n';
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void Write(const std::string& name, const std::string& data) {
    std::ofstream(dir / name, std::ios::binary) << data;
  }
  std::string Read(const std::string& name) {
    std::ifstream in(dir / name, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }

  fs::path tool, dir;
  int errLines = 0;
};

TEST_F(MqlistTool, MakeWritesWhatTheProgramSaves) {
  const std::string text = "caf\xC3\xA9 \xE2\x82\xAC";           // café € fits Windows-1252
  const std::string unicode = "\xCE\xA9 \xF0\x9F\x93\x8E";        // Ω 📎 does not
  const std::string rtf = "{\\rtf1 \\b Bold\\b0  text}";
  Write("a.txt", text);
  Write("b.RTF", rtf);
  Write("c.txt", "\xEF\xBB\xBF" + unicode);  // a byte-order mark is not part of the text
  const std::vector<ClipEntry> entries = {ClipEntry::Plain(FromUtf8(text)), ClipEntry::Rich(rtf),
                                          ClipEntry::Plain(FromUtf8(unicode))};
  const Windows1252 cp;

  ASSERT_EQ(Run("make plain.mql b.RTF"), 0);
  ASSERT_EQ(Run("make plain.mql a.txt b.RTF c.txt"), 0);  // replaces the file
  EXPECT_EQ(Read("plain.mql"), FileOperations::EncodeListFile(entries, cp, false, u""));
  ASSERT_EQ(Run("make prot.mqp --password 'pa ss' a.txt b.RTF c.txt"), 0);
  EXPECT_EQ(Read("prot.mqp"), FileOperations::EncodeListFile(entries, cp, true, u"pa ss"));

  for (const char* input : {"plain.mql", "prot.mqp --password 'pa ss'"}) {
    fs::remove_all(dir / "out");
    ASSERT_EQ(Run(std::string("dump ") + input + " out"), 0) << input;
    EXPECT_EQ(Read("out/000.txt"), text);
    EXPECT_EQ(Read("out/001.rtf"), rtf);
    EXPECT_EQ(Read("out/002.txt"), unicode);
    EXPECT_FALSE(fs::exists(dir / "out/003.txt"));
  }

  std::string info;
  ASSERT_EQ(Run("info plain.mql", &info), 0);
  for (const std::string& line : {std::string("M2L"), std::string("entries: 3"),
                                  "001-16639  type -16639 (rich text)  " +
                                      std::to_string(rtf.size()) + " bytes",
                                  std::string("00213  type 13")})
    EXPECT_NE(info.find(line), std::string::npos) << line << " in\n" << info;
}

TEST_F(MqlistTool, ExitStatusSaysWhatWentWrong) {
  Write("a.txt", "alpha");
  Write("empty.txt", "");
  Write("foreign.mql", "PK\x03\x04 not a list");
  Write("damaged.mql", "M2L\r\x01\x02\x03");
  fs::create_directories(dir / "folder.mql" / "inner");
  ASSERT_EQ(Run("make p.mqp --password right a.txt"), 0);

  // 1: the file is refused (one line on stderr); 2: the command itself is wrong.
  const std::pair<const char*, int> cases[] = {
      {"dump p.mqp --password wrong out", 1}, {"info p.mqp --password wrong", 1},
      {"dump foreign.mql out", 1},            {"dump damaged.mql out", 1},
      {"info damaged.mql", 1},                {"dump p.mqp out", 2},
      {"dump missing.mql out", 2},            {"make x.mql missing.txt", 2},
      {"make x.mql empty.txt", 2},            {"make x.mql", 2},
      {"make x.mql --password '' a.txt", 2},  {"frobnicate a.txt", 2},
      {"", 2},                                {"make no/such/dir/x.mql a.txt", 2},
      {"make folder.mql a.txt", 2},
  };
  for (const auto& [args, status] : cases) {
    EXPECT_EQ(Run(args), status) << args;
    if (status == 1) EXPECT_EQ(errLines, 1) << args;
  }
  EXPECT_FALSE(fs::exists(dir / "out/000.txt"));
  // A write that failed left what was there and no temporary file.
  EXPECT_TRUE(fs::is_directory(dir / "folder.mql" / "inner"));
  for (const auto& entry : fs::directory_iterator(dir))
    EXPECT_EQ(entry.path().filename().string().find(".tmp"), std::string::npos) << entry.path();
  std::string info;
  EXPECT_EQ(Run("info p.mqp", &info), 0);
  EXPECT_NE(info.find("M2P"), std::string::npos);
}

}  // namespace
}  // namespace mq
