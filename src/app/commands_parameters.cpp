#include <filesystem>
#include <fstream>

#include "app/commands.h"
#include "app/parameter_forms.h"
#include "files/parameter_file.h"
#include "digital/mechanism_compiler.h"
#include "ui/form_mech.h"
#include "ui/main_form.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// The file holds no typed reactions: those on the form stand, and the user
// is told when they have another number of species than the file.
void NoteTypedSpecies(Workbench& wb, const ParameterRecord& p) {
  if (p.mechanism.value_or(-1) != 0) return;
  Experiment scratch = wb.experiment;
  (void)CompileMechanism(wb.formMech().mechanismInput(), scratch);
  if (Count(scratch.NSpecies) == static_cast<int>(p.species.size())) return;
  wb.formResult().print("The file has " + std::to_string(p.species.size()) +
                        " species; the reactions typed on the Mechanism form have " +
                        std::to_string(Count(scratch.NSpecies)) + ".");
}

// "&Open Parameters...": a file that "&Save..." wrote, back into the forms.
// A file that cannot be read changes nothing and says why.
void OpenParameters(Workbench& wb) {
  const auto path = wb.platform.files.ask(DialogMode::Open, kParameterFilter);
  if (!path) return;
  std::ifstream in(*path, std::ios::binary);
  ParameterReadResult read;
  read.description = "the file cannot be opened";
  if (in) read = ReadParameterFile(in);
  const std::string name = std::filesystem::path(*path).filename().string();
  if (!read.ok) {
    wb.platform.messages.show("ReadParameters Error: " + name + ", " + read.description + ".");
    return;
  }
  const AppliedParameters applied = ApplyParameters(wb, read.record);
  FormResult& result = wb.formResult();
  result.show();
  result.print("Parameters read from " + name);
  if (applied.preEquilibrationOff)
    result.print("Pre-equilibration is off: the next run starts from the concentrations of the file.");
  NoteTypedSpecies(wb, read.record);
}

}  // namespace

void BindParameterCommands(Workbench& wb) {
  wb.mainForm().menu("mnuOpen").onClick = [&wb] { OpenParameters(wb); };
}

}  // namespace voltrix
