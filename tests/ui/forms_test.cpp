// The input forms as a chemist uses them: where their controls stand, the
// texts derived from an edit, the geometry step, the layouts that follow the
// mechanism and technique, and the commit into the experiment.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "model/controls.h"
#include "ui/form_expr.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

Control& Find(Workbench& wb, const std::string& form, const std::string& target) {
  const auto open = target.find('(');
  const int index = open == std::string::npos ? -1 : std::stoi(target.substr(open + 1));
  return wb.formNamed(form)->control(target.substr(0, open), index);
}

bool Overlap(const Place& a, const Place& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height && b.top < a.top + a.height;
}

// Every control lies inside its frame or form, no two boxes a user types or
// clicks in overlap, and the places and fonts the tables give stand as given.
TEST(FormLayout, PlacesOfTheTablesAndNoControlHidesAnother) {
  Session session;
  Workbench& wb = session.wb;
  std::ifstream file(VOLTRIX_TEST_DATA "/ui/form_places.txt");
  std::string line;
  int rows = 0;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    std::string form, target, field[4];
    words >> form >> target >> field[0] >> field[1] >> field[2] >> field[3];
    const Place& p = Find(wb, form, target).place();
    const int actual[] = {p.left, p.top, p.width, p.height};
    for (int k = 0; k < 4; ++k)
      if (field[k] != "*") {
        EXPECT_EQ(actual[k], std::stoi(field[k])) << line;
      }
    ++rows;
  }
  EXPECT_GT(rows, 200);
  for (const std::string& name : Workbench::formNames()) {
    Form& form = *wb.formNamed(name);
    for (const Control* a : form.controls()) {
      const Place outer = a->container() ? a->container()->place() : Place{0, 0, form.area().width, form.area().height};
      const Place& p = a->place();
      const bool inside = p.left >= 0 && p.top >= 0 && p.left + p.width <= outer.width && p.top + p.height <= outer.height;
      EXPECT_TRUE(inside || a->kind() == ControlKind::Menu) << name << "." << a->fullName();
      // The labels of the chemicals form: plain, 8.25 point; a rate heading's
      // subscript ("k" then a smaller "f" or "b", set lower) the one exception.
      const auto& font = a->state().font;
      const bool subscript = a->name().ends_with("Sub");
      EXPECT_TRUE(name != "FormExpr" || a->kind() != ControlKind::Label || !font || subscript ||
                  (font->size == 8.25 && !font->bold))
          << a->fullName();
      if (subscript) {
        const Control& k = form.control(a->name().substr(0, a->name().size() - 3));
        EXPECT_EQ(k.caption() + a->caption(), a->name() == "LabelKfSub" ? "kf" : "kb");
        EXPECT_TRUE(font->size < k.state().font->size && p.top > k.place().top) << a->fullName();
      }
      for (const Control* b : form.controls()) {
        const auto input = [](const Control* c) {
          return c->kind() == ControlKind::TextBox || c->kind() == ControlKind::ComboBox ||
                 c->kind() == ControlKind::CheckBox || c->kind() == ControlKind::CommandButton;
        };
        const bool apart = !(a < b && input(a) && input(b) && a->container() == b->container()) || !Overlap(p, b->place());
        EXPECT_TRUE(apart) << name << "." << a->fullName() << " " << b->fullName();
      }
    }
  }
}

// What a control shows after a user's edits, and what the commit and the
// mechanism compiler make of the forms.
TEST(FormChains, DerivedTextsCommitAndCompile) { CheckTranscript("ui/form_chains.txt"); }

}  // namespace
}  // namespace voltrix::test
