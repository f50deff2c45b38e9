#pragma once
// The parameter file (.par): a written record of the Experiment, pairs of a
// label line and a value line, CR LF line ends; parameter_reader.h reads it
// back.
#include <ostream>
#include <string>

#include "model/experiment.h"

namespace voltrix {

// What the open and save dialogs offer for it.
inline constexpr const char* kParameterFilter = "parameter (*.par)|*.par|all|*.*";

// Writes the whole file; false when the stream failed.
[[nodiscard]] bool WriteParameterFile(std::ostream& out, const Experiment& e);

// The file's text, for tests and previews.
[[nodiscard]] std::string ParameterFileText(const Experiment& e);

}  // namespace voltrix
