#pragma once
// The command layer: binds every item of the menu bar to its handler. The
// menu tree itself (captions, order, enabled state) is MainForm's.
#include <string>

namespace voltrix {

class Workbench;

// Binds every group below. Called once by each front end.
void BindMenuCommands(Workbench& wb);

// One group per file, each bound by an explicit call.
void BindProgramCommands(Workbench& wb);   // "&Input" forms, "E&xit"
void BindRunCommands(Workbench& wb);       // "&Simulate"
void BindDisplayCommands(Workbench& wb);   // "&Display" menu, "&About..."
void BindFileCommands(Workbench& wb);      // "&Save...", "&Import Data...", "&Export Data..."
void BindPictureCommands(Workbench& wb);   // "&Copy to Clipboard", "&Print"
void BindAnalysisCommands(Workbench& wb);  // "&Analysis" menu
void BindFitCommands(Workbench& wb);       // fits and separation
void BindParameterCommands(Workbench& wb);  // "&Open Parameters..."

// Binds a handler that tells the user the command does not exist yet.
void BindNotAvailable(Workbench& wb, const std::string& menuName);

// Runs the menu command of that control name as a click on it. Returns false
// (and changes nothing) when the item is disabled or a menu of items. An
// error that no routine of the command handles is shown as a message.
bool RunMenuCommand(Workbench& wb, const std::string& menuName);

}  // namespace voltrix
