// Curve and parameter files: the line layouts the program writes, round trips
// to 15 digits, the variants and faults of files from elsewhere, and writes
// that lose nothing when they fail.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "files/curve_file.h"
#include "files/parameter_file.h"
#include "files/safe_write.h"
#include "model/errors.h"

namespace voltrix {
namespace {

TEST(CurveFile, LinesHaveTheYValueAtTheNextPrintZone) {
  EXPECT_EQ(CurveLine(0.3, 1.25e-6), " 0.3 ,         1.25E-06 ");
  EXPECT_EQ(CurveLine(-0.123456789012345, 1), "-0.123456789012345 ,         1 ");  // past 14: the stop at 28
  CurveStore s;
  for (int i = 1; i <= 5; ++i) s.XData(i) = i;
  for (int i = 1; i <= 5; ++i) s.YData(3, i) = -i;
  std::ostringstream out, beyond;
  ASSERT_TRUE(WriteCurve(out, s, 2, 4, 3));
  EXPECT_EQ(out.str(), " 2 ,          -2 \r\n 3 ,          -3 \r\n 4 ,          -4 \r\n");
  EXPECT_FALSE(WriteCurve(beyond, s, 3990, 4001, 3));
}

// Files from elsewhere: every common variant reads as the same three points,
// and every fault carries the platform's description.
TEST(CurveFile, VariantsAndFaultsOfFilesFromElsewhere) {
  std::string tooLong;
  for (int i = 1; i <= 4001; ++i) tooLong += std::to_string(i) + "," + std::to_string(-i) + "\r\n";
  const struct {
    std::string text;
    const char* description;  // "" for a file that reads
    long points;
  } cases[] = {
      {"0.3,1e-5\n0.295,2e-5\n0.29,3e-5\n", "", 3},            {"0.3,1e-5\r0.295,2e-5\r0.29,3e-5\r", "", 3},
      {"\xEF\xBB\xBF 0.3 ,  1e-5 \r\n 0.295 , 2e-5\r\n0.29,3e-5", "", 3},  // byte order mark
      {"\n\n0.3,1e-5\n\n\n0.295,2e-5\n  \n0.29,3e-5\n\n\n", "", 3},
      {"0.3 1e-5\n0.295\t2e-5\n  0.29   3e-5", "", 3},
      {" 0.3 ,          0.00001 \r\n 0.295 ,        0.00002 \r\n 0.29 ,         0.00003 \r\n", "", 3},  // its own export
      {"0.3,1e-5\r\n0.295,2e-5\r\n0.29,3e-5\r\n\x1A garbage after the mark", "", 3},
      {"0.3,1e-5\n0.295,2e-5\n0.29,3e-5x\n", "", 3},  // after two points a field keeps its leading number
      {"", "", 0},                                            {"E,I\n0.3,1e-5\n", "Type mismatch", 0},
      {"0.3,1e-5\nnone,2e-5\n", "Type mismatch", 1},           {"0.3,1e-5\n0.295\n", "Input past end of file", 2},
      {"0.3,1e999\n", "Overflow", 1},
      {tooLong, "Subscript out of range", 4000},
      {tooLong.substr(0, tooLong.rfind("\r\n4001,") + 2), "", 4000},
  };
  for (const auto& c : cases) {
    CurveStore s;
    const CurveReadResult read = ReadCurveText(c.text, s, 1);
    EXPECT_EQ(read.ok, c.description[0] == '\0') << c.text.substr(0, 30);
    EXPECT_EQ(read.description, c.description) << c.text.substr(0, 30);
    EXPECT_EQ(read.points, c.points) << c.text.substr(0, 30);
    if (c.points == 3) {
      EXPECT_DOUBLE_EQ(s.XData(3), 0.29) << c.text.substr(0, 30);
      EXPECT_DOUBLE_EQ(s.YData(1, 3), 3e-5) << c.text.substr(0, 30);
    }
  }
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {  // binary junk never stores a value that is not finite
    std::string junk;
    for (int k = 0; k < 2000; ++k) junk.push_back(static_cast<char>(random() & 0xFF));
    CurveStore s;
    const CurveReadResult read = ReadCurveText(junk, s, 1);
    for (long i = 1; i <= read.points; ++i) ASSERT_TRUE(std::isfinite(s.XData(i)) && std::isfinite(s.YData(1, i)));
  }
}

// Pairs of label and value lines: 13 for the scan and the cell, then 8 per
// species; a field never given a value prints an empty line.
TEST(ParameterFile, PairsOfLabelAndValueLines) {
  Experiment e;
  e.NSpecies = 0;
  EXPECT_EQ(ParameterFileText(e).substr(0, 17), "Technique :\r\n\r\nMe");
  EXPECT_EQ(ParameterFileText(e).substr(ParameterFileText(e).size() - 26), "NUMBER OF SPECIES :\r\n 0 \r\n");
  e.NSpecies = 2;
  e.D(1) = 1e-5;
  e.Cond(1) = 50;
  e.Estart = 0.3;
  const std::string text = ParameterFileText(e);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 * (13 + 8 * 2));
  EXPECT_NE(text.find("E start :\r\n 0.3 \r\n"), std::string::npos);
  EXPECT_NE(text.find("Species \r\n 1 \r\nD :\r\n 1E-05 \r\nC :\r\n\r\n"), std::string::npos);
  EXPECT_NE(text.find("Conductivity :\r\n 50 \r\nSpecies \r\n 2 \r\n"), std::string::npos);
  std::ostringstream failed;
  failed.setstate(std::ios::badbit);
  EXPECT_FALSE(WriteParameterFile(failed, e));
}

// The whole text replaces the target, or nothing changes and no temporary
// stays behind.
TEST(SafeWrite, ReplacesWholeOrNotAtAll) {
  namespace fs = std::filesystem;
  const fs::path dir = fs::temp_directory_path() / ("voltrix-safe-write-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string target = (dir / "curve.csv").string();
  const auto contents = [&] { return std::string(std::istreambuf_iterator<char>(std::ifstream(target, std::ios::binary).rdbuf()), {}); };
  std::ofstream(target) << "old";
  ASSERT_TRUE(WriteFileSafely(target, [](std::ostream& out) { return bool(out << "a\r\nb\r\n"); }));
  EXPECT_EQ(contents(), "a\r\nb\r\n");
  EXPECT_FALSE(WriteFileSafely(target, [](std::ostream& out) { return !(out << "half"); }));
  EXPECT_FALSE(WriteFileSafely(target, [](std::ostream& out) -> bool {
    out << "half";
    Raise(ErrorKind::SubscriptOutOfRange);
  }));
  for (const std::string& bad : {std::string(), dir.string(), (dir / "missing/x.csv").string()})
    EXPECT_FALSE(WriteFileSafely(bad, [](std::ostream&) { return true; })) << bad;
  EXPECT_EQ(contents(), "a\r\nb\r\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
  fs::remove_all(dir);
}

}  // namespace
}  // namespace voltrix
