// Headless controls behave as a user's edit does: an event for each real
// change and none otherwise, one option button per frame, list indices
// within the list.
#include "model/controls.h"

#include <gtest/gtest.h>

#include "model/errors.h"

namespace voltrix {
namespace {

struct Panel : Form {
  Panel() : Form("Panel", "Panel", {0, 0, 100, 100}) {
    left = &add(ControlKind::Frame, "left");
    for (int i = 1; i <= 3; ++i) add(ControlKind::OptionButton, "opt", i, i < 3 ? left : nullptr);
    add(ControlKind::ComboBox, "list").items({"single", "cycle"});
    add(ControlKind::ComboBox, "typed").items({"1", "2"}).editable(true);
    for (Control* c : controls()) c->onChange = c->onClick = [this, c] { events += c->fullName() + " "; };
    addObserver([this](const Control*) { ++notes; });
  }
  Control* left;
  std::string events;
  int notes = 0;
};

TEST(Controls, EventsFollowRealChangesOnly) {
  Panel p;
  p.add(ControlKind::TextBox, "box").onChange = [&] { p.events += "box "; };
  p.add(ControlKind::CheckBox, "check").onClick = [&] { p.events += "check "; };
  p.control("box").setText("1");
  p.control("box").setText("1");  // the same text: no event
  p.control("check").click();
  p.control("check").setValue(5);  // still checked
  p.control("check").setValue(0);
  p.control("opt", 1).setValue(1);
  p.control("opt", 2).click();  // selects 2, clears 1 in the same frame
  p.control("opt", 3).setValue(1);  // another container: 2 stays
  p.control("opt", 2).click();  // a click on the selected one still runs
  p.control("list").setText("cycle");
  p.control("list").setListIndex(1);
  p.control("typed").setText("7");  // an editable list takes any text
  EXPECT_EQ(p.events, "box check check opt(1) opt(2) opt(3) opt(2) list typed ");
  EXPECT_EQ(p.control("opt", 1).value() + 2 * p.control("opt", 2).value() + 4 * p.control("opt", 3).value(), 6);
  EXPECT_EQ(p.control("typed").listIndex(), -1);
  EXPECT_EQ(p.control("list").listIndex(), 1);
  EXPECT_GT(p.notes, 8);
}

TEST(Controls, AListIndexOrItemOutsideTheListIsRefused) {
  Panel p;
  p.control("list").setListIndex(0);
  p.control("list").setListIndex(-1);  // no item: an empty text
  EXPECT_EQ(p.control("list").text(), "");
  for (int bad : {2, -2}) EXPECT_THROW(p.control("list").setListIndex(bad), RunError) << bad;
  EXPECT_THROW(p.control("list").setText("3 cycles"), RunError);
  EXPECT_THROW(p.control("nothing"), RunError);
  EXPECT_EQ(p.events, "list list ");
  EXPECT_EQ(p.control("opt", 3).fullName(), "opt(3)");
  EXPECT_TRUE(p.hasControlNamed("typed"));
  EXPECT_FALSE(p.hasControlNamed("type"));
}

}  // namespace
}  // namespace voltrix
