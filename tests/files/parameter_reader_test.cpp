// Parameter files read back: what the writer wrote comes back digit for
// digit, files touched by other editors still read, and a broken file is
// refused with the line that breaks it.
#include "files/parameter_reader.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "files/parameter_file.h"

namespace voltrix {
namespace {

// Fields never given a value (the times, the pulse, species 3 on) print as
// empty lines and read back as "".
Experiment Written(bool accurate) {
  Experiment e;
  e.Technique = 5;
  e.Mechanism = 0;
  e.Electrode = 4;
  e.Estart = 0.3;
  e.Eend = -0.45;
  e.Estep = 0.002;
  e.ARE = 0.00126;
  e.NData = 376;
  e.NSpecies = 2;
  for (int i = 1; i <= 2; ++i) {
    e.D(i) = 7.6e-6 * i;
    e.C(i) = i == 1 ? 1e-3 : 2.5e-8;
    e.NEL(i) = i;
    e.Cond(i) = 50 * i;
  }
  e.Accurate = accurate;
  return e;
}

TEST(ParameterReader, GivesBackWhatTheWriterWrote) {
  for (bool accurate : {false, true}) {
    const ParameterReadResult r = ReadParameterText(ParameterFileText(Written(accurate)));
    ASSERT_TRUE(r.ok) << r.description;
    const ParameterRecord& p = r.record;
    EXPECT_EQ(p.technique, 5);
    EXPECT_EQ(p.mechanism, 0);
    EXPECT_EQ(p.electrode, 4);
    EXPECT_EQ(p.Eend, "-0.45");
    EXPECT_EQ(p.area, "0.00126");
    EXPECT_EQ(p.points, "376");
    ASSERT_EQ(p.species.size(), 2u);
    EXPECT_EQ(p.species[0].D, "7.6E-06");
    EXPECT_EQ(p.species[1].C, "2.5E-08");
    EXPECT_EQ(p.species[1].n, "2");
    EXPECT_EQ(p.species[1].conductivity, "100");
    EXPECT_EQ(p.td, "");
    EXPECT_EQ(p.accurate, accurate);
  }
}

TEST(ParameterReader, ReadsFilesThatOtherProgramsTouched) {
  const std::string crlf = ParameterFileText(Written(false));
  const std::string lf = std::regex_replace(crlf, std::regex("\r\n"), "\n");
  const std::string trimmed = std::regex_replace(lf, std::regex(" +\n"), "\n");  // blanks at line ends gone
  std::string comma = crlf;  // written where the decimal separator is a comma
  comma.replace(comma.find(" 0.3 "), 5, " 0,3 ");
  for (const std::string& text : {lf, trimmed, "\xEF\xBB\xBF" + crlf + "\r\n\r\n", comma}) {
    const ParameterReadResult r = ReadParameterText(text);
    EXPECT_TRUE(r.ok) << r.description;
    EXPECT_EQ(r.record.Estart, "0.3");
  }
}

TEST(ParameterReader, RefusesABrokenFileNamingItsLine) {
  const std::string good = ParameterFileText(Written(false));
  auto with = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    text.replace(text.find(from), from.size(), to);
    return text;
  };
  struct Row {
    std::string text, description;
  } rows[] = {
      {"", "the file is empty"},
      {with("E Step :", "E Steps :"), "line 11: \"E Step :\" expected, found \"E Steps :\""},
      {with(" 0.002 ", " 2 mV "), "line 12: \"2 mV\" under \"E Step :\" is no number"},
      {with(" 5 ", " 7 "), "line 2: \"Technique :\" must be a whole number from 1 to 5, not 7"},
      {with("Species \r\n 2 ", "Species \r\n 3 "), "line 44: \"Species\" must be a whole number from 2 to 2, not 3"},
      {good.substr(0, good.find("Alpha :")), "line 35: the file ends where \"Alpha :\" should follow"},
      {good + "Comment\r\n", "line 59: \"Comment\" follows the last species block"},
      {good + "Accurate physics :\r\n 2 \r\n", "line 60: \"Accurate physics :\" must be a whole number from 0 to 1, not 2"},
  };
  for (const Row& r : rows) {
    const ParameterReadResult read = ReadParameterText(r.text);
    EXPECT_FALSE(read.ok);
    EXPECT_EQ(read.description, r.description);
  }
}

}  // namespace
}  // namespace voltrix
