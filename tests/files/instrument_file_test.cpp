// Instrument files read, cut into cycles and laid on the Estart/Estep grid.
// The fixtures were written by hand from the formats' public descriptions;
// their currents are simple functions of E, stated beside each row, so every
// expected value below is worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "files/import_grid.h"
#include "files/instrument_file.h"
#include "files/instrument_text.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(__FILE__).parent_path() / "fixtures";

InstrumentReadResult ReadFixture(const std::string& name, const ColumnChoice& columns = {}) {
  std::ifstream in(kFixtures / name, std::ios::binary);
  return ReadInstrumentFile(in, columns, name);
}

struct GridPoint {
  int i;
  double X, Y;
};

struct FixtureCase {
  const char* file;
  const char* format;
  const char* encoding;
  long points;
  std::size_t cycles, defaultCycle;
  double Estart, Eend, Estep;
  bool cycle;
  std::size_t NData;
  GridPoint rows[3];
  int technique;
  double scanRate, area;  // 0: not stated
  const char* note;       // a quirk the reader must report, or ""
};

const FixtureCase kFixtureCases[] = {
    // Forward I = 1e-6 (1 + 10 (0.2 - E)), back I = -1e-6 (1 + 10 (E + 0.2)); the turn keeps its forward point.
    {"chi_cv.csv", "CH Instruments text", "UTF-8", 17, 1, 0, 0.2, -0.2, 0.05, true, 18,
     {{9, -0.2, 5e-6}, {10, -0.2, 5e-6}, {11, -0.15, -1.5e-6}}, 1, 0.1, 0, ""},
    // Cycle 1: forward (1 + E) mA, back -(1 + E) mA; the error-flagged first row is left out.
    {"eclab_cv.mpt", "BioLogic EC-Lab ASCII", "Windows-1252", 22, 2, 0, 0.5, 0, 0.1, true, 12,
     {{1, 0.5, 1.5e-3}, {6, 0, 1e-3}, {8, 0.1, -1.1e-3}}, 1, 0.1, 0.071, "1 point flagged as an error"},
    // I = 10 (E + 0.1) µA.
    {"eclab_lsv.txt", "BioLogic EC-Lab text", "UTF-8", 9, 1, 0, -0.1, 0.3, 0.05, false, 9,
     {{1, -0.1, 0}, {5, 0.1, 2e-6}, {9, 0.3, 4e-6}}, 0, 0, 0, ""},
    // CURVE1: forward 1e-6 (4 - 10 E), back -1e-6 (10 E + 2); decimal commas throughout.
    {"gamry_cv.DTA", "Gamry .DTA", "UTF-8", 18, 2, 0, 0.3, -0.1, 0.1, true, 10,
     {{5, -0.1, 5e-6}, {7, 0, -2e-6}, {10, 0.3, -5e-6}}, 1, 0.05, 0.5, "CURVE1 declares 12 points; 9 are present"},
    // One table with a Cycle column; cycle 1: forward 1e-6 (1 + 10 E), back -1e-6 (1 + 10 E).
    {"gamry_cycles.DTA", "Gamry .DTA", "UTF-8", 18, 2, 0, 0, 0.2, 0.05, true, 10,
     {{1, 0, 1e-6}, {5, 0.2, 3e-6}, {7, 0.15, -2.5e-6}}, 1, 0.02, 0, ""},
    // Square wave, I = 1e-7 k at E = -0.004 k.
    {"chi_swv.txt", "CH Instruments text", "UTF-8", 26, 1, 0, 0, -0.1, 0.004, false, 26,
     {{1, 0, 0}, {14, -0.052, 1.3e-6}, {26, -0.1, 2.5e-6}}, 5, 0, 0, ""},
    // Idif = (k + 1) 1e-7 at Vstep = -0.005 k.
    {"gamry_dpv.DTA", "Gamry .DTA", "UTF-8", 9, 1, 0, 0, -0.04, 0.005, false, 9,
     {{1, 0, 1e-7}, {5, -0.02, 5e-7}, {9, -0.04, 9e-7}}, 4, 0, 0, ""},
    // Measured E = applied + 0.1 mV; scan 1: forward 1e-5 E, back -1e-5 (0.4 - E), both in applied E. The grid
    // starts at 0 V, 0.1 mV before the data: that point takes the nearest current.
    {"autolab_cv.txt", "Metrohm Autolab NOVA", "UTF-8", 18, 2, 0, 0, 0.4, 0.1, true, 10,
     {{2, 0.1, 9.99e-7}, {7, 0.3, -1.001e-6}, {10, 0, -4e-6}}, 0, 0, 0, ""},
    // Scan 1: forward 2 (E + 0.3) µA, back -2 (0.3 - E) µA; scan 2 stops at the turn, so it is incomplete.
    {"palmsens_cv.csv", "PalmSens PSTrace CSV", "UTF-16LE", 14, 2, 0, -0.2, 0.2, 0.1, true, 10,
     {{1, -0.2, 0.2e-6}, {6, 0.2, 1e-6}, {7, 0.1, -0.4e-6}}, 1, 0, 0, ""},
    // I = 0.5 (100 - E/mV) nA.
    {"generic_lsv.csv", "delimited text", "UTF-8", 9, 1, 0, 0.1, -0.1, 0.025, false, 9,
     {{1, 0.1, 0}, {5, 0, 5e-8}, {9, -0.1, 1e-7}}, 1, 0, 0.0707, ""},
};

TEST(InstrumentFile, EachFormatReadsItsPointsCyclesAndSettingsAndLandsOnTheGrid) {
  for (const FixtureCase& c : kFixtureCases) {
    SCOPED_TRACE(c.file);
    const InstrumentReadResult read = ReadFixture(c.file);
    ASSERT_EQ(read.status, InstrumentStatus::Read) << read.error;
    const InstrumentRecord& rec = read.record;
    EXPECT_EQ(rec.format, c.format);
    EXPECT_EQ(rec.encoding, c.encoding);
    EXPECT_EQ(rec.pointsRead, c.points);
    EXPECT_EQ(rec.stated.technique, c.technique);
    EXPECT_CLOSE(rec.stated.scanRate.value_or(0), c.scanRate, 1e-12);
    EXPECT_CLOSE(rec.stated.area.value_or(0), c.area, 1e-12);
    bool noted = std::string(c.note).empty();
    for (const std::string& n : rec.notes) noted = noted || n.find(c.note) != std::string::npos;
    EXPECT_TRUE(noted) << c.note;
    const CycleSplit split = SplitCycles(rec.scans);
    ASSERT_EQ(split.cycles.size(), c.cycles);
    ASSERT_EQ(FirstCompleteCycle(split.cycles), c.defaultCycle);
    const GridResult laid = LayOnPotentialGrid(split.cycles[c.defaultCycle], rec.stated.step, 4000);
    ASSERT_TRUE(laid.ok) << laid.error;
    const ImportGrid& g = laid.grid;
    EXPECT_EQ(g.Estart, c.Estart);
    EXPECT_EQ(g.Eend, c.Eend);
    EXPECT_EQ(g.Estep, c.Estep);
    EXPECT_EQ(g.cycle, c.cycle);
    ASSERT_EQ(g.X.size(), c.NData);
    for (const GridPoint& p : c.rows) {
      EXPECT_NEAR(g.X[static_cast<std::size_t>(p.i - 1)], p.X, 1e-12) << "point " << p.i;
      EXPECT_NEAR(g.Y[static_cast<std::size_t>(p.i - 1)], p.Y, 1e-9 * std::fabs(p.Y) + 1e-18) << "point " << p.i;
    }
  }
}

TEST(InstrumentFile, ChosenColumnsReplaceTheReadersChoice) {
  // The applied potential instead of the measured one: the grid starts on the data, 0 V exactly.
  const InstrumentReadResult applied = ReadFixture("autolab_cv.txt", {"Potential applied (V)", ""});
  ASSERT_EQ(applied.status, InstrumentStatus::Read);
  EXPECT_EQ(applied.record.potentialColumn, "Potential applied (V)");
  EXPECT_EQ(applied.record.scans[0].E[1], 0.1);
  // Numbered columns read a table without titles, in V and A.
  const InstrumentReadResult numbered = ReadInstrumentText("0.1 5 2e-6\n0.2 6 3e-6\n", {"1", "3"});
  ASSERT_EQ(numbered.status, InstrumentStatus::Read);
  EXPECT_EQ(numbered.record.scans[0].I, (std::vector<double>{2e-6, 3e-6}));
  EXPECT_EQ(ReadFixture("autolab_cv.txt", {"", "WE(9).Current (A)"}).status, InstrumentStatus::Failed);
}

// Files without a header block are known by the titles their software gives
// the columns (EC-Lab: "Ewe", "<I>", "<Ewe>" of pulse tables; NOVA: "WE(1).",
// "Potential applied").
TEST(InstrumentFile, TitleRowsNameTheSoftwareThatWroteThem) {
  const struct {
    const char* text;
    const char* format;
    double secondCurrent;  // A
  } cases[] = {
      {"Ewe/V\tI/mA\n0.1\t1\n0.2\t2\n", "BioLogic EC-Lab text", 2e-3},
      {"E/V\t<I>/mA\n0.1\t1\n0.2\t2\n", "BioLogic EC-Lab text", 2e-3},
      {"<Ewe>/V\tI/mA\n0.1\t1\n0.2\t2\n", "BioLogic EC-Lab text", 2e-3},
      {"WE(1).Potential (V);WE(1).Current (A)\n0,1;1E-6\n0,2;2E-6\n", "Metrohm Autolab NOVA", 2e-6},
      {"Potential applied (V);I (A)\n0,1;1E-6\n0,2;2E-6\n", "Metrohm Autolab NOVA", 2e-6},
      {"E/mV,I/uA\n100,1\n200,2\n", "delimited text", 2e-6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const InstrumentReadResult r = ReadInstrumentText(c.text, {}, "cv.txt");
    ASSERT_EQ(r.status, InstrumentStatus::Read) << r.error;
    EXPECT_EQ(r.record.format, c.format);
    EXPECT_CLOSE(r.record.scans[0].I.back(), c.secondCurrent, 1e-12);
  }
}

struct Unreadable {
  std::string bytes;
  const char* name;
  InstrumentStatus status;
  const char* says;  // part of the message: the format, or how to get a readable file
};

TEST(InstrumentFile, UnreadableFilesNameTheirFormatAndTheWayToText) {
  const auto fixture = [](const char* name) {
    std::ifstream in(kFixtures / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  const Unreadable cases[] = {
      {fixture("binary.mpr"), "run.dat", InstrumentStatus::Failed, "export the data as text (.mpt)"},
      {fixture("cut_short.mpt"), "cv.mpt", InstrumentStatus::Failed, "announces 57 lines, the file holds 4"},
      {std::string("PK\x03\x04\0\0", 6), "cv.nox", InstrumentStatus::Failed, "In NOVA, export the data as ASCII"},
      {"\xFF\xFE{\0}\0", "cv.pssession", InstrumentStatus::Failed, "PSTrace session file"},
      {"anything", "cv.idf", InstrumentStatus::Failed, "In IviumSoft, export"},
      {"EXPLAIN\r\nTAG\tCV\r\n", "cv.DTA", InstrumentStatus::Failed, "no CURVE table"},
      {"E (V);I (A)\n\n", "cv.txt", InstrumentStatus::Failed, "no rows of numbers"},
      // Our own export and headerless numbers stay with the classic reader.
      {" 0.3 ,         1.25E-06 \r\n 0.295 ,       1.3E-06 \r\n", "cv.csv", InstrumentStatus::NotRecognised, ""},
      {std::string("\x00\x01\xff\xfePK\x03\x04", 8), "junk.csv", InstrumentStatus::NotRecognised, ""},
  };
  for (const Unreadable& c : cases) {
    SCOPED_TRACE(c.name);
    const InstrumentReadResult r = ReadInstrumentText(c.bytes, {}, c.name);
    EXPECT_EQ(r.status, c.status);
    EXPECT_NE(r.error.find(c.says), std::string::npos) << r.error;
  }
}

TEST(InstrumentText, NumbersUnitsAndEncodingsAsInstrumentsWriteThem) {
  struct Number {
    const char* text;
    bool comma;
    std::optional<double> value;
  };
  const Number numbers[] = {{"1,5E-003", true, 1.5e-3}, {"1,5", false, std::nullopt}, {" -0.25 ", false, -0.25},
                            {"+.5", false, 0.5},        {"nan", false, std::nullopt},  {"inf", true, std::nullopt},
                            {"1e999", false, std::nullopt}, {"1e-999", false, 0.0},     {"1.2.3", true, std::nullopt},
                            {"", false, std::nullopt},  {"2 3", false, std::nullopt}};
  for (const Number& n : numbers) EXPECT_EQ(ParseNumber(n.text, n.comma), n.value) << n.text;
  EXPECT_EQ(CurrentUnit("\xC2\xB5" "A"), 1e-6);  // the micro sign
  EXPECT_EQ(CurrentUnit("\xCE\xBC" "A"), 1e-6);  // the Greek letter mu
  EXPECT_EQ(CurrentUnit("nA"), 1e-9);
  EXPECT_EQ(PotentialUnit("V vs. Ref."), 1.0);
  EXPECT_EQ(PotentialUnit("mA"), std::nullopt);
  // Windows-1252 micro and squared signs become UTF-8; UTF-16 needs no byte order mark; CR alone ends a line.
  EXPECT_EQ(DecodeText("I/\xB5" "A\rcm\xB2").lines, (std::vector<std::string>{"I/\xC2\xB5" "A", "cm\xC2\xB2"}));
  EXPECT_EQ(DecodeText(std::string("E\0,\0I\0", 6)).lines, (std::vector<std::string>{"E,I"}));
  EXPECT_TRUE(DecodeText(std::string("E\0\x01I", 4)).binary);
  // A three-byte UTF-8 sign from its first lead byte on keeps the file UTF-8.
  EXPECT_EQ(DecodeText("I/A \xE0\xA4\x85").encoding, "UTF-8");
}

}  // namespace
}  // namespace voltrix
