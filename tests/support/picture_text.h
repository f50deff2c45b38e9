#pragma once
// A recorded plot picture as text, one drawing call a line, numbers to nine
// significant digits: what golden files of pictures hold.
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "model/headless_platform.h"

namespace voltrix::test {

inline std::string PictureText(const std::vector<DrawCall>& calls) {
  std::string out;
  char number[32];
  for (const DrawCall& c : calls) {
    out += c.op;
    for (float a : c.args) {
      std::snprintf(number, sizeof number, " %.9g", static_cast<double>(a));
      out += number;
    }
    if (!c.text.empty()) out += " \"" + c.text + "\"";
    out += "\n";
  }
  return out;
}

// The golden picture of that name; written afresh instead when the variable
// VOLTRIX_WRITE_GOLDEN is set (and then returned as written).
inline std::string GoldenPicture(const std::string& path, const std::string& actual) {
  if (std::getenv("VOLTRIX_WRITE_GOLDEN")) std::ofstream(path, std::ios::binary) << actual;
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace voltrix::test
