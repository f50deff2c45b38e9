#pragma once
// The curve file (.csv): one point a line, the X value, a comma, the Y value
// at the next print zone, CR LF line ends, no header.
#include <istream>
#include <ostream>
#include <string>

#include "model/curve_store.h"

namespace voltrix {

// Points first to last of XData and of YData row `row`. False when the range
// lies outside the store or the stream failed.
[[nodiscard]] bool WriteCurve(std::ostream& out, const CurveStore& s, long first, long last, long row);

// One line of the file, without its line end.
[[nodiscard]] std::string CurveLine(double x, double y);

struct CurveReadResult {
  bool ok = false;
  long points = 0;          // points stored, the last one perhaps half read
  std::string description;  // what went wrong, when not ok
};

// Reads fields into XData(i) and YData(row, i), i from 1, until the end of
// the input. The reader is lenient: a field ends at a comma or a line end, a
// number also at a blank; blanks, empty lines, a UTF-8 byte order mark and
// either line end are taken in stride, and an end-of-file mark (Ctrl-Z) ends
// the input. A field that holds no number stores its leading number or 0,
// except in the first two points, whose step describes the whole file: there
// it is a "Type mismatch". A 4001st point is "Subscript out of range", a
// point without its Y field "Input past end of file", a number beyond the
// range of doubles "Overflow". Points read before a fault stay in the store.
[[nodiscard]] CurveReadResult ReadCurve(std::istream& in, CurveStore& s, long row);
[[nodiscard]] CurveReadResult ReadCurveText(const std::string& text, CurveStore& s, long row);

}  // namespace voltrix
