#include "files/curve_file.h"

#include <sstream>

#include "model/errors.h"
#include "model/number_format.h"

namespace voltrix {

std::string CurveLine(double x, double y) { return PrintLine().number(x).text(",").zone().number(y).str(); }

bool WriteCurve(std::ostream& out, const CurveStore& s, long first, long last, long row) {
  try {
    for (long i = first; i <= last; ++i) out << CurveLine(s.XData(i), s.YData(row, i)) << "\r\n";
  } catch (const RunError&) {
    return false;
  }
  return out.good();
}

namespace {

constexpr int kEndOfFileMark = 0x1A;
// A field longer than this is junk: the rest is read past but not kept.
constexpr std::size_t kLongestField = 512;

constexpr int kEof = std::char_traits<char>::eof();

bool StartsNumber(int c) { return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.'; }
bool IsBlank(int c) { return c == ' ' || c == '\t'; }
bool IsLineEnd(int c) { return c == '\r' || c == '\n'; }

class FieldReader {
 public:
  explicit FieldReader(std::istream& in) : in_(in) { skipByteOrderMark(); }

  // Skips blanks and line ends; true when no further field stands in the input.
  bool atEnd() {
    for (;;) {
      const int c = in_.peek();
      if (c == kEof || c == kEndOfFileMark) return true;
      if (!IsBlank(c) && !IsLineEnd(c)) return false;
      in_.get();
    }
  }

  // The next field, without its blanks; raises "Input past end of file" when
  // there is none. A field that starts like a number ends at a blank too, so
  // "0.3 1e-5" holds two fields, as a file separated by blanks or tabs has.
  std::string next() {
    if (atEnd()) Raise(ErrorKind::InputPastEnd);
    std::string field;
    int c = in_.peek();
    if (c == '"') {
      in_.get();
      while ((c = in_.get()) != kEof && c != '"' && c != kEndOfFileMark) keep(field, c);
    }
    const bool number = StartsNumber(c);
    while ((c = in_.peek()) != kEof && c != kEndOfFileMark && c != ',' && !IsLineEnd(c) && !(number && IsBlank(c))) {
      keep(field, c);
      in_.get();
    }
    while (number && IsBlank(c = in_.peek())) in_.get();
    if (c == ',') in_.get();
    while (!field.empty() && IsBlank(static_cast<unsigned char>(field.back()))) field.pop_back();
    return field;
  }

 private:
  static void keep(std::string& field, int c) {
    if (field.size() < kLongestField) field.push_back(static_cast<char>(c));
  }

  void skipByteOrderMark() {
    static const char bom[] = "\xEF\xBB\xBF";
    for (int i = 0; i < 3; ++i) {
      if (in_.peek() != static_cast<unsigned char>(bom[i])) {
        // A partial mark is kept as text: put back what was taken.
        for (int j = i - 1; j >= 0; --j) in_.putback(bom[j]);
        in_.clear();
        return;
      }
      in_.get();
    }
  }

  std::istream& in_;
};

// A number ends at a blank: "0.3 V" reads 0.3.
double FieldValue(const std::string& field, long point) {
  const std::string token = field.substr(0, field.find_first_of(" \t"));
  if (token.empty() || IsNumeric(token)) return Val(token);
  if (point <= 2) Raise(ErrorKind::TypeMismatch);
  return Val(field);
}

}  // namespace

CurveReadResult ReadCurve(std::istream& in, CurveStore& s, long row) {
  CurveReadResult result;
  try {
    s.YData.row(row);  // a wrong row fails before anything is read
    FieldReader fields(in);
    long i = 0;
    while (!fields.atEnd()) {
      ++i;
      const std::string x = fields.next();
      s.XData(i) = FieldValue(x, i);
      result.points = i;
      const std::string y = fields.next();
      s.YData(row, i) = FieldValue(y, i);
    }
    if (in.bad()) Raise(ErrorKind::FileAccess);
    result.ok = true;
  } catch (const RunError& err) {
    result.description = err.description();
  }
  return result;
}

CurveReadResult ReadCurveText(const std::string& text, CurveStore& s, long row) {
  std::istringstream in(text);
  return ReadCurve(in, s, row);
}

}  // namespace voltrix
