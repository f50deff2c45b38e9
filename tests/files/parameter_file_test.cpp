#include "files/parameter_file.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace voltrix {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t at; (at = text.find("\r\n", start)) != std::string::npos; start = at + 2)
    lines.push_back(text.substr(start, at - start));
  EXPECT_EQ(start, text.size()) << "text after the last CR LF";
  return lines;
}

Experiment SweepExperiment() {
  Experiment e;
  e.Technique = 1;
  e.Mechanism = 1;
  e.Electrode = 1;
  e.Estart = 0.3;
  e.Eend = -0.3;
  e.Estep = 0.005;
  e.tp = 0.05;
  e.td = 0.5;
  e.ARE = 1;
  e.Epulse = -0.05;
  e.Noise = 0;
  e.NData = 121;
  e.NSpecies = 2;
  e.D(1) = 1e-5;
  e.D(2) = 1e-5;
  e.C(1) = 1e-3;
  e.C(2) = 0;
  e.ks(1) = 1e4;
  e.alph(1) = 0.5;
  e.NEL(1) = 1;
  e.Eze(1) = 0;
  e.Cond(1) = 50;
  return e;
}

TEST(ParameterFile, StartsWithTheIdentityAndScanInPlainNumbers) {
  const std::vector<std::string> lines = Lines(ParameterFileText(SweepExperiment()));
  const std::vector<std::string> head = {"Technique :", " 1 ",   "Mechisim :", " 1 ",   "Electorde", " 1 ",
                                         "E start :",   " 0.3 ", "E end :",    "-0.3 ", "E Step :",  " 0.005 "};
  ASSERT_GE(lines.size(), head.size());
  EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + head.size()), head);
}

TEST(ParameterFile, HoldsThirteenPairsThenEightPairsPerSpecies) {
  const std::vector<std::string> lines = Lines(ParameterFileText(SweepExperiment()));
  ASSERT_EQ(lines.size(), 2u * (13 + 8 * 2));
  const std::vector<std::string> tail = {"t pulse :", " 0.05 ", "t drop :", " 0.5 ", "Area Of Electrode :", " 1 ",
                                         "E pulse :", "-0.05 ", "Noise (%) :", " 0 ", "No. OF DATA :", " 121 ",
                                         "NUMBER OF SPECIES :", " 2 "};
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 12, lines.begin() + 26), tail);
  const std::vector<std::string> species1 = {"Species ", " 1 ", "D :", " 1E-05 ", "C :", " 0.001 ",
                                             "ks :", " 10000 ", "Alpha :", " 0.5 ", "n :", " 1 ",
                                             "E' :", " 0 ", "Conductivity :", " 50 "};
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 26, lines.begin() + 42), species1);
  // Species 2 shows entry 2 of the reaction arrays, never set here: empty lines.
  EXPECT_EQ(lines[42], "Species ");
  EXPECT_EQ(lines[43], " 2 ");
  EXPECT_EQ(lines[49], "");  // ks(2)
  EXPECT_EQ(lines[57], "");  // Cond(2)
}

TEST(ParameterFile, NeverSetFieldsPrintEmptyAndNoSpeciesEndsTheFile) {
  Experiment e;
  e.NSpecies = 0;
  const std::vector<std::string> lines = Lines(ParameterFileText(e));
  ASSERT_EQ(lines.size(), 26u);
  EXPECT_EQ(lines[0], "Technique :");
  EXPECT_EQ(lines[1], "");
  EXPECT_EQ(lines[24], "NUMBER OF SPECIES :");
  EXPECT_EQ(lines[25], " 0 ");
}

TEST(ParameterFile, ReportsAFailedStream) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  EXPECT_FALSE(WriteParameterFile(out, SweepExperiment()));
}

}  // namespace
}  // namespace voltrix
