#pragma once
// The fit statements of voltrix-cli: the curve set of a global fit and the
// fit itself, and Ctrl-C, which stops a running fit between passes.
//   fitset add FILE [Form.control[(i)]=TEXT ...]   a curve file and its settings
//   fitset row N [Form.control[(i)]=TEXT ...]      row N of the plotted curves
//   fitset list | fitset clear | fitset fit        the set, and its global fit
//   fitset curve I [FILE]                           X, data, fit and residual of curve I
namespace voltrix {

class Cli;

void RegisterFitStatements(Cli& cli);

}  // namespace voltrix
