#include "files/instrument_file.h"


#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

// Beyond this a file is no measured curve the readers should hold in memory;
// the classic reader streams it and stops at its point limit.
constexpr std::size_t kLargestFile = 256u << 20;

struct Unreadable {
  const char* extension;
  const char* format;
  const char* remedy;
};

// Formats that keep their data in a form no text reader can take.
constexpr Unreadable kUnreadable[] = {
    {".mpr", "BioLogic EC-Lab binary file (.mpr)", kEcLabRemedy},
    {".nox", "Metrohm Autolab NOVA procedure file (.nox)", kAutolabRemedy},
    {".idf", "Ivium data file (.idf)", kIviumRemedy},
    {".pssession", "PalmSens PSTrace session file (.pssession)", kPalmSensRemedy},
};

std::optional<InstrumentReadResult> UnreadableFormat(std::string_view bytes, std::string_view fileName) {
  if (StartsWith(bytes, "BIO-LOGIC MODULAR FILE"))
    return Failure(kUnreadable[0].format, "this format cannot be read", kUnreadable[0].remedy);
  const std::string name = Lower(fileName);
  for (const Unreadable& u : kUnreadable) {
    const std::string_view ext = u.extension;
    if (name.size() > ext.size() && name.compare(name.size() - ext.size(), ext.size(), ext) == 0)
      return Failure(u.format, "this format cannot be read", u.remedy);
  }
  return std::nullopt;
}

std::optional<InstrumentReadResult> ReadText(const DecodedText& text, const ColumnChoice& choice) {
  const Lines& lines = text.lines;
  if (auto r = ReadGamry(lines, choice)) return r;
  if (auto r = ReadEcLab(lines, choice)) return r;
  if (auto r = ReadChInstruments(lines, choice)) return r;
  if (auto r = ReadPalmSens(lines, choice, StartsWith(text.encoding, "UTF-16"))) return r;
  if (auto r = ReadTitledTable(lines, choice)) return r;
  if (auto r = ReadNumberedColumns(lines, choice)) return r;
  return std::nullopt;
}

const char* RemedyFor(const std::string& format) {
  if (StartsWith(format, "Gamry")) return kGamryRemedy;
  if (StartsWith(format, "BioLogic")) return kEcLabRemedy;
  if (StartsWith(format, "CH Instruments")) return kChRemedy;
  if (StartsWith(format, "PalmSens")) return kPalmSensRemedy;
  if (StartsWith(format, "Metrohm")) return kAutolabRemedy;
  return kTableRemedy;
}

}  // namespace

InstrumentReadResult ReadInstrumentText(std::string_view bytes, const ColumnChoice& choice, std::string_view fileName) {
  const DecodedText text = DecodeText(bytes);
  std::optional<InstrumentReadResult> read;
  if (!text.binary) read = ReadText(text, choice);
  if (!read) read = UnreadableFormat(bytes, fileName);
  if (!read) return {};
  read->record.encoding = text.encoding;
  if (read->status != InstrumentStatus::Read) return *read;
  read->record.pointsRead = PointsIn(read->record.scans);
  if (read->record.pointsRead == 0)
    return Failure(read->record.format, "the file holds no points", RemedyFor(read->record.format));
  return *read;
}

InstrumentReadResult ReadInstrumentFile(std::istream& in, const ColumnChoice& choice, std::string_view fileName) {
  std::string bytes;
  char chunk[1 << 16];
  while (in.read(chunk, sizeof chunk) || in.gcount() > 0) {
    bytes.append(chunk, static_cast<std::size_t>(in.gcount()));
    if (bytes.size() > kLargestFile) return {};
  }
  return ReadInstrumentText(bytes, choice, fileName);
}

}  // namespace voltrix
