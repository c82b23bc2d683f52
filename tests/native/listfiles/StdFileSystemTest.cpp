// The file system of the mqlist tool: it reads, replaces atomically and checks folders.
#include "platform/StdFileSystem.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace mq {
namespace {

namespace fs = std::filesystem;

TEST(StdFileSystem, AtomicWriteReplacesOnlyWhenComplete) {
  const fs::path dir = fs::temp_directory_path() / ("mq-fs-" + std::to_string(getpid()));
  fs::remove_all(dir);
  fs::create_directories(dir / "folder" / "inner");
  StdFileSystem files;
  const Text target = (dir / "list.mql").u16string(), folder = (dir / "folder").u16string();
  Text error;
  Bytes read;
  ASSERT_TRUE(files.WriteAllAtomic(target, Bytes("first\0bytes", 11), error));
  ASSERT_TRUE(files.ReadAll(target, read, error));
  EXPECT_EQ(read, Bytes("first\0bytes", 11));
  ASSERT_TRUE(files.WriteAllAtomic(target, "second", error));
  ASSERT_TRUE(files.ReadAll(target, read, error));
  EXPECT_EQ(read, "second");

  // A target that cannot be replaced (a folder with content) is left alone, and no
  // temporary file stays behind.
  EXPECT_FALSE(files.WriteAllAtomic(folder, "data", error));
  EXPECT_FALSE(error.empty());
  EXPECT_TRUE(files.IsDirectory(folder) && fs::is_directory(dir / "folder" / "inner"));
  error.clear();
  EXPECT_FALSE(files.WriteAllAtomic((dir / "missing" / "x").u16string(), "data", error));
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 2);
  EXPECT_FALSE(files.ReadAll(folder + u"/none", read, error));
  fs::remove_all(dir);
}

}  // namespace
}  // namespace mq
