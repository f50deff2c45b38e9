#pragma once
// The text layer under the instrument readers: bytes to UTF-8 lines whatever
// the encoding a potentiostat's software chose, fields, locale numbers and
// the units that column titles carry.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace voltrix {

struct DecodedText {
  bool binary = false;       // NUL bytes outside UTF-16: no text reader applies
  std::string encoding;      // "UTF-8", "UTF-16LE", "UTF-16BE", "Windows-1252"
  std::vector<std::string> lines;  // UTF-8, without line ends (CR LF, LF or CR)
};

[[nodiscard]] DecodedText DecodeText(std::string_view bytes);

std::string Trim(std::string_view s);
std::string Lower(std::string_view s);
bool StartsWith(std::string_view s, std::string_view prefix);
bool Contains(std::string_view s, std::string_view part);  // ASCII case-insensitive

// Fields of a line split at `delimiter`, each trimmed and unquoted; ' '
// splits at runs of blanks and tabs.
std::vector<std::string> SplitFields(std::string_view line, char delimiter);

// Tab, then ';', then ',' where the line holds one; else blanks.
char GuessDelimiter(std::string_view line);

// A whole field as a finite number: sign, digits, one decimal mark ('.', or
// ',' where decimalComma), exponent. No value for anything else, for NaN or
// infinity texts and for numbers beyond the range of doubles.
[[nodiscard]] std::optional<double> ParseNumber(std::string_view field, bool decimalComma);

// The leading number of a text, as ParseNumber reads it ("0,071 cm²" gives 0.071).
[[nodiscard]] std::optional<double> LeadingNumber(std::string_view text, bool decimalComma);

// A column title split into its quantity and unit: "Ewe/V", "WE(1).Current
// (A)", "I [mA]", "Potential (mV)". The unit is empty where none is given.
struct ColumnTitle {
  std::string quantity, unit;
};
ColumnTitle SplitColumnTitle(std::string_view title);

// Factors to V and to A; no value for a text that is no such unit.
std::optional<double> PotentialUnit(std::string_view unit);
std::optional<double> CurrentUnit(std::string_view unit);

// How well a column's quantity names the electrode potential or the
// current: 0 is the best match, a larger number a weaker one; no value for
// a column that names neither.
std::optional<int> PotentialRank(std::string_view quantity);
std::optional<int> CurrentRank(std::string_view quantity);

}  // namespace voltrix
