#pragma once
// Measured curves as potentiostats write them: the files of CH Instruments,
// BioLogic EC-Lab, Gamry, Metrohm Autolab NOVA and PalmSens PSTrace, and any
// delimited text whose header names a potential and a current column. The
// readers recognise a file by its content; what none recognises is left to
// the classic curve reader.
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace voltrix {

// Points as the file groups them (one cycle, scan or table each), in V and A.
struct MeasuredScan {
  std::string label;  // "cycle 2", "CURVE3", "scan 1"
  std::vector<double> E, I;
};

// What a header states, in V, s, Hz, °C and cm². Technique numbers are
// those of the technique form: 1 sweep, 3 normal pulse, 4 differential
// pulse, 5 square wave; 0 where the file does not say.
struct StatedSettings {
  int technique = 0;
  std::optional<double> scanRate, step, pulseHeight, pulseWidth, frequency, temperature, area;
  // What the header says the run planned, under the header's own name for
  // it ("CYCLES", "nc cycles", "Segment"); some count sweeps, not cycles.
  std::optional<int> planned;
  std::string plannedName;
  bool plannedSweeps = false;
};

struct InstrumentRecord {
  std::string format;  // "Gamry .DTA", "BioLogic EC-Lab ASCII", ...
  std::string encoding;
  std::string potentialColumn, currentColumn;  // as titled in the file
  std::vector<MeasuredScan> scans;
  StatedSettings stated;
  long pointsRead = 0;
  std::vector<std::string> notes;  // quirks met on the way, for the result window
};

enum class InstrumentStatus { NotRecognised, Read, Failed };

struct InstrumentReadResult {
  InstrumentStatus status = InstrumentStatus::NotRecognised;
  InstrumentRecord record;
  std::string error;  // when Failed: what is wrong, and how to get a readable file
};

// Columns the user names instead of the reader's choice: a title as the
// file writes it, or a column number from 1. Empty means the reader chooses.
struct ColumnChoice {
  std::string potential, current;
  bool any() const { return !potential.empty() || !current.empty(); }
};

// `fileName` names a format that cannot be read at all (.mpr, .nox, .idf,
// .pssession) when its content does not; it is never used to pick a reader.
[[nodiscard]] InstrumentReadResult ReadInstrumentFile(std::istream& in, const ColumnChoice& columns = {},
                                                      std::string_view fileName = {});
[[nodiscard]] InstrumentReadResult ReadInstrumentText(std::string_view bytes, const ColumnChoice& columns = {},
                                                      std::string_view fileName = {});

}  // namespace voltrix
