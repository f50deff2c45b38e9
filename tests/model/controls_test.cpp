// Headless controls behave as a user's edit does: an event for each real
// change and none otherwise, one option button per frame, list indices
// within the list.
#include "model/controls.h"

#include <gtest/gtest.h>

#include "model/errors.h"

namespace voltrix {
namespace {

TEST(Controls, EventsFollowRealChangesOnly) {
  Form p("Panel", "Panel", {0, 0, 100, 100});
  Control* frame = &p.add(ControlKind::Frame, "frame");
  for (int i = 1; i <= 3; ++i) p.add(ControlKind::OptionButton, "opt", i, i < 3 ? frame : nullptr);
  p.add(ControlKind::ComboBox, "list").items({"single", "cycle"});
  p.add(ControlKind::ComboBox, "typed").items({"1", "2"}).editable(true);
  p.add(ControlKind::TextBox, "box");
  p.add(ControlKind::CheckBox, "check");
  std::string events;
  for (Control* c : p.controls()) c->onChange = c->onClick = [&events, c] { events += c->fullName() + " "; };
  int notes = 0;
  p.addObserver([&](const Control*) { ++notes; });
  p.control("box").setText("1");
  p.control("box").setText("1");  // the same text: no event
  p.control("check").click();
  p.control("check").setValue(5);  // still checked
  p.control("check").setValue(0);
  p.control("opt", 1).setValue(1);
  p.control("opt", 2).click();      // selects 2, clears 1 in the same frame
  p.control("opt", 3).setValue(1);  // another container: 2 stays
  p.control("opt", 2).click();      // a click on the selected one still runs
  p.control("list").setText("cycle");
  p.control("list").setListIndex(1);
  p.control("typed").setText("7");  // an editable list takes any text
  EXPECT_EQ(events, "box check check opt(1) opt(2) opt(3) opt(2) list typed ");
  EXPECT_EQ(p.control("opt", 1).value() + 2 * p.control("opt", 2).value() + 4 * p.control("opt", 3).value(), 6);
  EXPECT_EQ(p.control("typed").listIndex(), -1);
  EXPECT_GT(notes, 8);
  p.control("list").setListIndex(-1);  // no item: an empty text
  EXPECT_EQ(p.control("list").text(), "");
  for (int bad : {2, -2}) EXPECT_THROW(p.control("list").setListIndex(bad), RunError) << bad;
  EXPECT_THROW(p.control("list").setText("3 cycles"), RunError);
  EXPECT_THROW(p.control("nothing"), RunError);
  EXPECT_TRUE(p.hasControlNamed("typed"));
  EXPECT_FALSE(p.hasControlNamed("type"));
}

}  // namespace
}  // namespace voltrix
