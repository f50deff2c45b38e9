#pragma once
// Where a report goes, one finished line at a time: the result window for a
// menu command, a vector in a test. Lines printed before a fault stay printed.
#include <functional>
#include <string>

namespace voltrix {

using LineSink = std::function<void(const std::string& line)>;

}  // namespace voltrix
