#pragma once
// One reader per format. Each returns no value when the text is not in its
// format, so that the next one may try. Internal to the files layer.
#include <optional>

#include "files/instrument_table.h"

namespace voltrix {

// "EXPLAIN" first, TAG and setup lines, CURVE tables with a units row.
std::optional<InstrumentReadResult> ReadGamry(const Lines& lines, const ColumnChoice& choice);
// "EC-Lab ASCII FILE" and "Nb header lines : N"; the N-th line titles the columns.
std::optional<InstrumentReadResult> ReadEcLab(const Lines& lines, const ColumnChoice& choice);
// "key = value" header lines, then the "Potential/V, Current/A" table.
std::optional<InstrumentReadResult> ReadChInstruments(const Lines& lines, const ColumnChoice& choice);
// A title row naming the scans over a row of units, one potential and
// current column pair per scan.
std::optional<InstrumentReadResult> ReadPalmSens(const Lines& lines, const ColumnChoice& choice, bool utf16);
// A title row naming a potential and a current column with their units:
// EC-Lab's text export, Autolab NOVA, or any delimited text.
std::optional<InstrumentReadResult> ReadTitledTable(const Lines& lines, const ColumnChoice& choice);
// Numbers only, read from the columns the user numbered.
std::optional<InstrumentReadResult> ReadNumberedColumns(const Lines& lines, const ColumnChoice& choice);

// What to do instead, for the message of a file that cannot be read.
inline constexpr const char* kEcLabRemedy = "In EC-Lab, export the data as text (.mpt) and import that file";
inline constexpr const char* kGamryRemedy =
    "Copy the .DTA file again as the Gamry Framework wrote it, or export the curve as text with a header naming "
    "its columns";
inline constexpr const char* kChRemedy =
    "In the CH Instruments software, save the data as text (.txt or .csv) and import that file";
inline constexpr const char* kAutolabRemedy = "In NOVA, export the data as ASCII text and import that file";
inline constexpr const char* kPalmSensRemedy = "In PSTrace, export the curves as CSV and import that file";
inline constexpr const char* kIviumRemedy = "In IviumSoft, export the data as text (ASCII) and import that file";
inline constexpr const char* kTableRemedy =
    "Give the file a header line that names the potential and the current columns with their units, such as "
    "\"E (V)\" and \"I (A)\", or choose the columns by number";

}  // namespace voltrix
