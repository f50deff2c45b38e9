#pragma once
// Pieces the instrument readers share: a delimited table under a title row,
// the header words that name a technique, and the result shapes. Internal
// to the files layer.
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "files/instrument_file.h"

namespace voltrix {

using Lines = std::vector<std::string>;

struct TableLayout {
  std::optional<std::size_t> titleLine;  // none: columns are chosen by number
  std::optional<std::size_t> unitsLine;  // a row of units under the titles (Gamry)
  std::size_t firstDataLine = 0;
  char delimiter = ',';
  bool decimalComma = false;
  bool leadingField = false;  // rows start with a delimiter (Gamry tables are indented)
};

struct TableRead {
  std::vector<MeasuredScan> scans;  // one per value of a cycle or scan column, else one
  std::string potentialColumn, currentColumn;
  long rows = 0;     // points taken
  long flagged = 0;  // rows an error column marks, left out
  std::size_t endLine = 0;  // the first line that is not part of the table
  std::vector<std::string> notes;
  std::string error;  // no potential or current column
};

[[nodiscard]] TableRead ReadTable(const Lines& lines, const TableLayout& layout, const ColumnChoice& choice);

// A table's points and columns as a read record in `format`.
InstrumentReadResult RecordOf(const std::string& format, TableRead& table);

// The table under the title row at `title`, delimited as that row is (decimal
// commas where the delimiter is no comma), as a record in `format`; a
// Failure when the titles name no potential or current column.
InstrumentReadResult ReadTableUnder(const Lines& lines, std::size_t title, const ColumnChoice& choice,
                                    const std::string& format, const char* remedy);

// True when the titles name a potential and a current column that the
// reader would take.
bool TitlesNamePotentialAndCurrent(const std::vector<std::string>& titles);

// 1 for sweeps (cyclic, linear), 3, 4 or 5 for the pulse techniques, 0 when
// the text names none: "Cyclic Voltammetry", "Differential Pulse", "SWV"...
int TechniqueNamed(const std::string& text);

// Header lines any format may hold: an electrode area in cm² or m², a
// temperature in °C or K. "key = value", "key : value" or "key<blanks>value".
void TakeCommonSettings(const std::string& line, bool decimalComma, StatedSettings& stated);

// A read that failed in a recognised format.
InstrumentReadResult Failure(const std::string& format, const std::string& what, const std::string& remedy);

// The points a record holds in all its scans.
long PointsIn(const std::vector<MeasuredScan>& scans);

}  // namespace voltrix
