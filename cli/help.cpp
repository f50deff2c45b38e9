// What the CLI tells about itself: its usage, its statements, and the forms,
// fit slots and menu commands of the workbench as they stand now.
#include <algorithm>
#include <sstream>

#include "cli.h"
#include "control_notes.h"
#include "fit/parameter_slots.h"
#include "ui/form_expr.h"
#include "ui/main_form.h"

namespace voltrix {

namespace {

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

std::string Padded(const std::string& s, std::size_t width) {
  // Width in characters as the terminal shows them: UTF-8 continuation
  // bytes take no column.
  std::size_t shown = 0;
  for (char c : s)
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++shown;
  return shown >= width ? s + " " : s + std::string(width - shown, ' ');
}

// One control, or the elements of a control array, as the user reads them.
struct ControlGroup {
  std::vector<Control*> members;
  Control& first() const { return *members.front(); }
  bool isArray() const { return first().index() >= 0; }
};

std::vector<ControlGroup> GroupByName(Form& form) {
  std::vector<ControlGroup> groups;
  for (Control* c : form.controls()) {
    if (c->kind() == ControlKind::Form) continue;
    bool joined = false;
    for (ControlGroup& g : groups)
      if (g.first().name() == c->name() && g.isArray() && c->index() >= 0) {
        g.members.push_back(c);
        joined = true;
        break;
      }
    if (!joined) groups.push_back({{c}});
  }
  for (ControlGroup& g : groups)
    std::sort(g.members.begin(), g.members.end(), [](const Control* a, const Control* b) { return a->index() < b->index(); });
  return groups;
}

std::string NameWithRange(const ControlGroup& g) {
  if (!g.isArray()) return g.first().name();
  int lo = g.first().index(), hi = lo;
  for (const Control* c : g.members) {
    lo = std::min(lo, c->index());
    hi = std::max(hi, c->index());
  }
  return g.first().name() + "(" + std::to_string(lo) + (hi > lo ? ".." + std::to_string(hi) : "") + ")";
}

// What a control holds: the text of a box or list, 0 or 1 for a check box or
// option button, the caption of anything else.
std::string ValueOf(const Control& c) {
  switch (c.kind()) {
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
      return std::to_string(c.value());
    default:
      return Quoted(c.shownText());
  }
}

bool HasOwnCaption(ControlKind kind) {
  return kind == ControlKind::CheckBox || kind == ControlKind::OptionButton || kind == ControlKind::CommandButton ||
         kind == ControlKind::Frame;
}

std::string CaptionOf(Form& form, const ControlGroup& g, const ControlNote* note) {
  if (note && note->label[0] != '\0') {
    const Control* label = form.find(note->label, note->labelIndex);
    if (label) return Quoted(label->caption());
  }
  if (!g.isArray() && HasOwnCaption(g.first().kind())) return Quoted(g.first().caption());
  return {};
}

// An array lists index=value; captioned elements (option buttons, check
// boxes) show their caption too.
std::string Values(const ControlGroup& g) {
  std::string v;
  for (const Control* c : g.members) {
    if (!v.empty()) v += " ";
    if (g.isArray()) v += std::to_string(c->index()) + "=";
    if (g.isArray() && HasOwnCaption(c->kind()) && !c->caption().empty()) v += Quoted(c->caption()) + ":";
    v += ValueOf(*c);
  }
  return v;
}

std::string Items(const Control& c) {
  std::string items;
  for (const std::string& item : c.items()) items += (items.empty() ? "" : " | ") + Quoted(item);
  return items;
}

bool EnabledWithParents(const Control& item) {
  for (const Control* c = &item; c; c = c->container())
    if (!c->enabled()) return false;
  return true;
}

int Depth(const Control& item) {
  int depth = 0;
  for (const Control* c = item.container(); c; c = c->container()) ++depth;
  return depth;
}

// The parameter a fit slot stands for: field, what it is, unit.
struct SlotMeaning {
  std::string field, what, unit;
};

// A row caption that is only its number has not been laid out yet.
std::string ReactionName(const std::string& kind, int number, const std::string& caption) {
  const std::string n = std::to_string(number);
  return caption == n ? kind + n : kind + n + " (" + caption + ")";
}

SlotMeaning MeaningOf(Workbench& wb, int slot) {
  Form& x = wb.formExpr();
  if (slot <= 6) {
    const std::string species = x.control("specie", slot).caption();
    return {"C(" + std::to_string(slot) + ")", "initial concentration of species " + species, "M"};
  }
  if (slot <= 15) {
    const int r = (slot - 7) % 3 + 1;
    const std::string reaction = ReactionName("charge reaction ", r, x.control("heter", r).caption());
    if (slot <= 9) return {"ks(" + std::to_string(r) + ")", "standard rate constant of " + reaction, "cm/s"};
    if (slot <= 12) return {"alph(" + std::to_string(r) + ")", "transfer coefficient of " + reaction, ""};
    return {"Eze(" + std::to_string(r) + ")", "standard potential of " + reaction, "V"};
  }
  if (slot == kDiffusionSlot)
    return {"D(1)", "diffusion coefficient of species " + x.control("specie", 1).caption() +
                        "; the others keep their ratio to it", "cm2/s"};
  const int q = (slot - 16) % 4 + 1;
  const std::string reaction = ReactionName("chemical reaction ", q, x.control("homo", q).caption());
  const char* unit = "1/s";
  if (slot <= 19) return {"kf(" + std::to_string(q) + ")", "forward rate constant of " + reaction, unit};
  return {"kb(" + std::to_string(q) + ")", "backward rate constant of " + reaction, unit};
}

}  // namespace

std::string Cli::statementList() {
  std::ostringstream h;
  h << "  set Form.control[(i)]=TEXT\n"
    << "  click Form.control[(i)]\n"
    << "  menu mnuName [FILE]\n"
    << "  show experiment\n"
    << "  show control Form.control[(i)]\n"
    << "  show curves [FILE]\n"
    << "  help [FORM | fit | menu]\n";
  for (const auto& [word, entry] : extra_) h << "  " << entry.first << "\n";
  return h.str();
}

std::string Cli::help() {
  std::ostringstream h;
  h << "statements:\n" << statementList();
  h << "forms:\n";
  for (const std::string& f : Workbench::formNames()) h << "  " << f << "\n";
  h << "menu commands:\n";
  for (Control* item : wb_.mainForm().menuItems())
    if (item->caption() != "-") h << "  " << item->name() << "  " << item->caption() << "\n";
  return h.str();
}

std::string Cli::help(const std::string& topic) {
  if (topic == "fit") return helpFit();
  if (topic == "menu") return helpMenu();
  Form* form = wb_.formNamed(topic);
  if (!form) throw StatementError("help knows forms, fit and menu, not \"" + topic + "\"");
  return helpForm(*form);
}

std::string Cli::helpForm(Form& form) {
  std::ostringstream h;
  h << form.name() << "  " << Quoted(form.caption()) << "\n";
  h << "  " << Padded("control", 24) << Padded("kind", 15) << Padded("caption", 26) << Padded("unit", 12)
    << "value\n";
  for (const ControlGroup& g : GroupByName(form)) {
    const Control& c = g.first();
    if (c.kind() == ControlKind::Menu) continue;
    const ControlNote* note = FindControlNote(form.name(), c.name());
    h << "  " << Padded(NameWithRange(g), 24) << Padded(KindName(c.kind()), 15)
      << Padded(CaptionOf(form, g, note), 26) << Padded(note ? note->unit : "", 12) << Values(g);
    if (c.kind() == ControlKind::ComboBox) h << "  items " << Items(c);
    if (!g.isArray() && !c.visible()) h << "  (hidden)";
    if (!g.isArray() && !c.enabled()) h << "  (disabled)";
    h << "\n";
  }
  return h.str();
}

std::string Cli::helpFit() {
  Form& x = wb_.formExpr();
  std::ostringstream h;
  h << "fit slots: tick FormExpr.CheckFitted(i) to fit the parameter between\n"
    << "FormExpr.TextCmin(i) and FormExpr.TextCmax(i)\n";
  h << "  " << Padded("slot", 17) << Padded("field", 9) << Padded("unit", 12) << Padded("fitted", 8)
    << Padded("min", 10) << Padded("max", 10) << "parameter\n";
  for (int slot = 1; slot <= kFitSlots; ++slot) {
    const SlotMeaning m = MeaningOf(wb_, slot);
    const Control& box = x.control("CheckFitted", slot);
    h << "  " << Padded("CheckFitted(" + std::to_string(slot) + ")", 17) << Padded(m.field, 9) << Padded(m.unit, 12)
      << Padded(box.checked() ? "yes" : "no", 8) << Padded(x.control("TextCmin", slot).text(), 10)
      << Padded(x.control("TextCmax", slot).text(), 10) << m.what;
    if (!box.visible()) h << " (not in the mechanism now)";
    h << "\n";
  }
  return h.str();
}

std::string Cli::helpMenu() {
  std::ostringstream h;
  h << "menu commands (run one with: menu NAME [FILE]); state now:\n";
  for (Control* item : wb_.mainForm().menuItems()) {
    if (item->caption() == "-") continue;
    const std::string indent(2 * static_cast<std::size_t>(Depth(*item) + 1), ' ');
    h << indent << Padded(item->name(), 24 - indent.size() + 2) << Padded(item->caption(), 22)
      << (EnabledWithParents(*item) ? "enabled" : "disabled") << "\n";
  }
  return h.str();
}

std::string Cli::usage() {
  std::ostringstream u;
  u << "usage: voltrix-cli [-k] [-f SCRIPT] [STATEMENT...]\n"
    << "\n"
    << "Runs Voltrix without a screen: each statement sets a control of a form,\n"
    << "clicks it or runs a menu command by name, as a user would on the desktop.\n"
    << "Statements come from SCRIPT (one per line, # starts a comment, - reads\n"
    << "standard input), then from the arguments, each argument one statement.\n"
    << "\n"
    << "options:\n"
    << "  -f SCRIPT     run the statements of SCRIPT first\n"
    << "  -k            keep going after a statement that ended in an error\n"
    << "  -h, --help    print this usage\n"
    << "  --version     print the version\n"
    << "\n"
    << "statements:\n"
    << statementList() << "\n"
    << "Result lines go to standard output; each message box goes to standard\n"
    << "error as \"message: TEXT\".\n"
    << "\n"
    << "exit status:\n"
    << "  0  every statement ran and none ended in an error\n"
    << "  1  a statement ended in an error message, or a file could not be\n"
    << "     written (\"cannot write FILE: reason\"); without -k nothing after it ran\n"
    << "  2  a statement was malformed or named an unknown form, control, index\n"
    << "     or command; nothing after it ran\n"
    << "\n"
    << "example:\n"
    << "  voltrix-cli \"set FormIns.ComboScan=cycle\" \"menu mnuSimulate\" \"show curves out.csv\"\n"
    << "\n"
    << "\"voltrix-cli help\" lists the forms and menu commands; \"help FormIns\" the\n"
    << "controls of a form, \"help fit\" the fit slots, \"help menu\" the commands.\n";
  return u.str();
}

}  // namespace voltrix
