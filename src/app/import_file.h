#pragma once
// "&Import Data..." once its file is known, shared by the menu command and
// the CLI's import statement.
#include <optional>
#include <string>

#include "files/instrument_file.h"

namespace voltrix {

class Workbench;

struct ImportRequest {
  std::optional<int> cycle;  // from 1; none: the user is asked where the file holds several
  ColumnChoice columns;
};

// Reads the curve in `path` into row NOverlay (StartCurve has chosen it). An
// instrument file is laid on the Estart/Estep grid and what its header
// states goes onto the forms; any other file goes to the classic reader.
// False when nothing was imported: the user has been told why, or cancelled.
bool ImportCurveFile(Workbench& wb, const std::string& path, const ImportRequest& request);

// After an import: the plot, the result window and the two menus a first
// curve opens.
void ShowImportedCurve(Workbench& wb);

enum class InstrumentImport { NotInstrument, Imported, Failed };

// The instrument half of ImportCurveFile: NotInstrument leaves the file,
// the store and the forms to the classic reader untouched.
InstrumentImport ImportInstrumentFile(Workbench& wb, const std::string& path, const ImportRequest& request);

}  // namespace voltrix
