#include "files/safe_write.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "model/errors.h"

namespace voltrix {
namespace {

namespace fs = std::filesystem;

struct TempFolder {
  fs::path path;
  TempFolder() {
    path = fs::temp_directory_path() / ("voltrix-safe-write-" + std::to_string(::getpid()) + "-" +
                                        ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(path);
    fs::create_directories(path);
  }
  ~TempFolder() { fs::remove_all(path); }
  std::string file(const std::string& name) const { return (path / name).string(); }
  int entries() const { return static_cast<int>(std::distance(fs::directory_iterator(path), fs::directory_iterator())); }
};

std::string Contents(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

TEST(SafeWrite, ReplacesTheTargetWithTheWholeTextByteForByte) {
  TempFolder dir;
  const std::string target = dir.file("curve.csv");
  std::ofstream(target) << "old";
  ASSERT_TRUE(WriteFileSafely(target, [](std::ostream& out) { return bool(out << "a\r\nb\r\n"); }));
  EXPECT_EQ(Contents(target), "a\r\nb\r\n");
  EXPECT_EQ(dir.entries(), 1);  // no temporary left beside it
}

TEST(SafeWrite, FailedWriteLeavesTheOldFileAndNoTemporary) {
  TempFolder dir;
  const std::string target = dir.file("run.par");
  std::ofstream(target) << "the good file";
  EXPECT_FALSE(WriteFileSafely(target, [](std::ostream& out) {
    out << "half";
    return false;
  }));
  EXPECT_FALSE(WriteFileSafely(target, [](std::ostream& out) -> bool {
    out << "half";
    Raise(ErrorKind::SubscriptOutOfRange);
  }));
  EXPECT_EQ(Contents(target), "the good file");
  EXPECT_EQ(dir.entries(), 1);
}

TEST(SafeWrite, UnusableNamesFailWithoutWriting) {
  TempFolder dir;
  EXPECT_FALSE(WriteFileSafely("", [](std::ostream&) { return true; }));
  EXPECT_FALSE(WriteFileSafely(dir.path.string(), [](std::ostream&) { return true; }));
  EXPECT_FALSE(WriteFileSafely(dir.file("missing/folder/x.csv"), [](std::ostream&) { return true; }));
  EXPECT_EQ(dir.entries(), 0);
}

}  // namespace
}  // namespace voltrix
