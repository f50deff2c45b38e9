#include "files/parameter_reader.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "model/number_format.h"

namespace voltrix {

namespace {

constexpr const char* kAccurateLabel = "Accurate physics :";

std::string TrimRight(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.pop_back();
  return s;
}

std::string Trim(const std::string& s) {
  const auto begin = s.find_first_not_of(" \t");
  return begin == std::string::npos ? std::string() : TrimRight(s.substr(begin));
}

std::vector<std::string> LinesOf(std::istream& in) {
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) lines.push_back(TrimRight(line));
  if (!lines.empty() && lines[0].rfind("\xEF\xBB\xBF", 0) == 0) lines[0].erase(0, 3);
  return lines;
}

// A file written where the decimal separator is a comma reads as well.
std::string WithDecimalPoint(std::string value) {
  if (value.find('.') == std::string::npos && value.find(',') == value.rfind(',')) {
    const auto comma = value.find(',');
    if (comma != std::string::npos) value[comma] = '.';
  }
  return value;
}

class PairReader {
 public:
  explicit PairReader(std::vector<std::string> lines) : lines_(std::move(lines)) {}

  bool atEnd() const { return next_ >= lines_.size(); }
  bool nextLabelIs(const char* label) const { return !atEnd() && Trim(lines_[next_]) == TrimRight(label); }
  const std::string& error() const { return error_; }

  // Nothing but empty lines may follow the last pair.
  bool finish() {
    while (!atEnd() && lines_[next_].empty()) ++next_;
    if (!atEnd()) fail(next_, "\"" + lines_[next_] + "\" follows the last species block");
    return atEnd();
  }

  // The value line under `label`, as a number's text or "".
  std::optional<std::string> number(const char* label) {
    const auto value = pair(label);
    if (!value) return std::nullopt;
    const std::string text = WithDecimalPoint(*value);
    if (!text.empty() && !IsNumeric(text)) return fail(next_ - 1, "\"" + *value + "\" under \"" + TrimRight(label) + "\" is no number");
    return text;
  }

  // A whole number from lo to hi, or none for an empty line; false on a fault.
  bool whole(const char* label, int lo, int hi, std::optional<int>& out) {
    const auto text = number(label);
    if (!text) return false;
    if (text->empty()) return true;
    const double v = Val(*text);
    if (v != std::floor(v) || v < lo || v > hi) {
      fail(next_ - 1, "\"" + TrimRight(label) + "\" must be a whole number from " + std::to_string(lo) + " to " +
                          std::to_string(hi) + ", not " + *text);
      return false;
    }
    out = static_cast<int>(v);
    return true;
  }

 private:
  std::optional<std::string> pair(const char* label) {
    if (atEnd()) return fail(lines_.size(), "the file ends where \"" + TrimRight(label) + "\" should follow");
    if (Trim(lines_[next_]) != TrimRight(label))
      return fail(next_, "\"" + TrimRight(label) + "\" expected, found \"" + lines_[next_] + "\"");
    if (next_ + 1 >= lines_.size()) return fail(lines_.size(), "the value under \"" + TrimRight(label) + "\" is missing");
    next_ += 2;
    return Trim(lines_[next_ - 1]);
  }

  std::nullopt_t fail(std::size_t index, const std::string& what) {
    if (error_.empty()) error_ = "line " + std::to_string(index + 1) + ": " + what;
    return std::nullopt;
  }

  std::vector<std::string> lines_;
  std::size_t next_ = 0;
  std::string error_;
};

bool ReadText(PairReader& r, const char* label, std::string& out) {
  const auto text = r.number(label);
  if (text) out = *text;
  return text.has_value();
}

bool ReadHead(PairReader& r, ParameterRecord& p) {
  return r.whole("Technique :", 1, 5, p.technique) && r.whole("Mechisim :", 0, 8, p.mechanism) &&
         r.whole("Electorde", 1, 8, p.electrode) && ReadText(r, "E start :", p.Estart) &&
         ReadText(r, "E end :", p.Eend) && ReadText(r, "E Step :", p.Estep) && ReadText(r, "t pulse :", p.tp) &&
         ReadText(r, "t drop :", p.td) && ReadText(r, "Area Of Electrode :", p.area) &&
         ReadText(r, "E pulse :", p.Epulse) && ReadText(r, "Noise (%) :", p.noise) &&
         ReadText(r, "No. OF DATA :", p.points);
}

bool ReadSpecies(PairReader& r, int i, SpeciesValues& s) {
  std::optional<int> index;
  if (!r.whole("Species ", i, i, index)) return false;
  return ReadText(r, "D :", s.D) && ReadText(r, "C :", s.C) && ReadText(r, "ks :", s.ks) &&
         ReadText(r, "Alpha :", s.alpha) && ReadText(r, "n :", s.n) && ReadText(r, "E' :", s.Eze) &&
         ReadText(r, "Conductivity :", s.conductivity);
}

bool ReadRecord(PairReader& r, ParameterRecord& p) {
  std::optional<int> species;
  if (!ReadHead(r, p) || !r.whole("NUMBER OF SPECIES :", 0, 6, species)) return false;
  p.species.resize(static_cast<std::size_t>(species.value_or(0)));
  for (int i = 1; i <= species.value_or(0); ++i)
    if (!ReadSpecies(r, i, p.species[static_cast<std::size_t>(i - 1)])) return false;
  if (r.nextLabelIs(kAccurateLabel)) {
    std::optional<int> accurate;
    if (!r.whole(kAccurateLabel, 0, 1, accurate)) return false;
    p.accurate = accurate.value_or(0) == 1;
  }
  return r.finish();
}

}  // namespace

ParameterReadResult ReadParameterFile(std::istream& in) {
  std::vector<std::string> lines = LinesOf(in);
  const bool empty = std::all_of(lines.begin(), lines.end(), [](const std::string& l) { return l.empty(); });
  PairReader reader(std::move(lines));
  ParameterReadResult result;
  if (empty) {
    result.description = "the file is empty";
    return result;
  }
  result.ok = ReadRecord(reader, result.record);
  result.description = reader.error();
  return result;
}

ParameterReadResult ReadParameterText(const std::string& text) {
  std::istringstream in(text);
  return ReadParameterFile(in);
}

bool LooksLikeParameterFile(std::istream& in) {
  std::string first;
  std::getline(in, first);
  if (first.rfind("\xEF\xBB\xBF", 0) == 0) first.erase(0, 3);
  return Trim(first) == "Technique :";
}

}  // namespace voltrix
