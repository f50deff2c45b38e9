#include "files/instrument_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

namespace voltrix {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

// Windows-1252 differs from Latin-1 only in 0x80 to 0x9F.
constexpr char32_t kCp1252High[32] = {
    0x20AC, kReplacement, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152,       kReplacement, 0x017D, kReplacement, kReplacement, 0x2018, 0x2019, 0x201C,
    0x201D, 0x2022,       0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, kReplacement,
    0x017E, 0x0178};

std::string FromCp1252(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (unsigned char b : bytes) {
    const char32_t c = b >= 0x80 && b < 0xA0 ? kCp1252High[b - 0x80] : b;
    AppendUtf8(out, c);
  }
  return out;
}

bool IsValidUtf8(std::string_view s) {
  std::size_t i = 0;
  while (i < s.size()) {
    const auto b = static_cast<unsigned char>(s[i]);
    int follow = 0;
    if (b < 0x80) {
      follow = 0;
    } else if (b >= 0xC2 && b <= 0xDF) {
      follow = 1;
    } else if (b >= 0xE0 && b <= 0xEF) {
      follow = 2;
    } else if (b >= 0xF0 && b <= 0xF4) {
      follow = 3;
    } else {
      return false;
    }
    if (follow > 0 && i + follow >= s.size()) return false;
    for (int k = 1; k <= follow; ++k)
      if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return false;
    i += static_cast<std::size_t>(follow) + 1;
  }
  return true;
}

std::string FromUtf16(std::string_view bytes, bool littleEndian) {
  std::string out;
  out.reserve(bytes.size() / 2);
  auto unit = [&](std::size_t i) -> char32_t {
    const auto a = static_cast<unsigned char>(bytes[i]);
    const auto b = static_cast<unsigned char>(bytes[i + 1]);
    return littleEndian ? (b << 8 | a) : (a << 8 | b);
  };
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char32_t c = unit(i);
    if (c >= 0xD800 && c <= 0xDBFF && i + 3 < bytes.size()) {
      const char32_t low = unit(i + 2);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      } else {
        c = kReplacement;
      }
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

// UTF-16 written without a byte order mark still shows itself: every
// other byte of plain text is NUL.
std::optional<bool> Utf16WithoutMark(std::string_view bytes) {
  const std::size_t pairs = std::min<std::size_t>(bytes.size() / 2, 512);
  if (pairs < 2) return std::nullopt;
  std::size_t evenNul = 0, oddNul = 0;
  for (std::size_t i = 0; i < pairs; ++i) {
    evenNul += bytes[2 * i] == '\0';
    oddNul += bytes[2 * i + 1] == '\0';
  }
  if (oddNul * 4 > pairs * 3 && evenNul == 0) return true;
  if (evenNul * 4 > pairs * 3 && oddNul == 0) return false;
  return std::nullopt;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\n' && text[i] != '\r') continue;
    lines.emplace_back(text.substr(start, i - start));
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    start = i + 1;
  }
  if (start < text.size()) lines.emplace_back(text.substr(start));
  return lines;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

DecodedText DecodeText(std::string_view bytes) {
  DecodedText d;
  std::string text;
  if (StartsWith(bytes, "\xFF\xFE") || StartsWith(bytes, "\xFE\xFF")) {
    const bool little = bytes[0] == '\xFF';
    d.encoding = little ? "UTF-16LE" : "UTF-16BE";
    text = FromUtf16(bytes.substr(2), little);
  } else if (const auto little = Utf16WithoutMark(bytes)) {
    d.encoding = *little ? "UTF-16LE" : "UTF-16BE";
    text = FromUtf16(bytes, *little);
  } else if (bytes.find('\0') != std::string_view::npos) {
    d.binary = true;
    return d;
  } else {
    if (StartsWith(bytes, "\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const bool utf8 = IsValidUtf8(bytes);
    d.encoding = utf8 ? "UTF-8" : "Windows-1252";
    text = utf8 ? std::string(bytes) : FromCp1252(bytes);
  }
  // A NUL inside decoded UTF-16 is as binary as one in 8-bit text.
  if (text.find('\0') != std::string::npos) {
    d.binary = true;
    return d;
  }
  d.lines = SplitLines(text);
  return d;
}

std::string Trim(std::string_view s) {
  std::size_t b = 0, e = s.size();
  while (b < e && (IsBlank(s[b]) || s[b] == '\r' || s[b] == '\n')) ++b;
  while (e > b && (IsBlank(s[e - 1]) || s[e - 1] == '\r' || s[e - 1] == '\n')) --e;
  return std::string(s.substr(b, e - b));
}

std::string Lower(std::string_view s) {
  std::string out(s);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

bool StartsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

bool Contains(std::string_view s, std::string_view part) { return Lower(s).find(Lower(part)) != std::string::npos; }

std::vector<std::string> SplitFields(std::string_view line, char delimiter) {
  std::vector<std::string> fields;
  auto keep = [&fields](std::string_view f) {
    std::string t = Trim(f);
    if (t.size() >= 2 && t.front() == '"' && t.back() == '"') t = Trim(std::string_view(t).substr(1, t.size() - 2));
    fields.push_back(std::move(t));
  };
  if (delimiter == ' ') {
    std::size_t i = 0;
    while (i < line.size()) {
      while (i < line.size() && IsBlank(line[i])) ++i;
      const std::size_t start = i;
      while (i < line.size() && !IsBlank(line[i])) ++i;
      if (i > start) keep(line.substr(start, i - start));
    }
    return fields;
  }
  std::size_t start = 0;
  for (std::size_t i = 0; i <= line.size(); ++i) {
    if (i < line.size() && line[i] != delimiter) continue;
    keep(line.substr(start, i - start));
    start = i + 1;
  }
  return fields;
}

char GuessDelimiter(std::string_view line) {
  for (char d : {'\t', ';', ','})
    if (line.find(d) != std::string_view::npos) return d;
  return ' ';
}

namespace {

// The length of the number at the start of `s` (0 when there is none) and
// its text with '.' as the decimal mark.
std::size_t ScanNumber(std::string_view s, bool decimalComma, std::string& normal, int& magnitude) {
  std::size_t i = 0;
  normal.clear();
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) normal.push_back(s[i++]);
  std::size_t digits = 0;
  int leadingZeros = 0, integerDigits = 0;
  bool significant = false, afterPoint = false;
  for (; i < s.size(); ++i) {
    const char c = s[i];
    if (IsDigit(c)) {
      ++digits;
      if (c != '0') significant = true;
      if (!significant && afterPoint) ++leadingZeros;
      if (significant && !afterPoint) ++integerDigits;
      normal.push_back(c);
    } else if (!afterPoint && (c == '.' || (decimalComma && c == ','))) {
      afterPoint = true;
      normal.push_back('.');
    } else {
      break;
    }
  }
  if (digits == 0) return 0;
  std::size_t end = i;
  int exponent = 0;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
    std::size_t j = i + 1;
    const bool negative = j < s.size() && s[j] == '-';
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
    std::size_t expDigits = 0;
    for (; j < s.size() && IsDigit(s[j]); ++j, ++expDigits) exponent = std::min(exponent * 10 + (s[j] - '0'), 100000);
    if (expDigits > 0) {
      normal.append(s.substr(i, j - i));
      end = j;
      if (negative) exponent = -exponent;
    } else {
      exponent = 0;
    }
  }
  // Where the first significant digit stands, as a power of ten.
  magnitude = significant ? (integerDigits > 0 ? integerDigits - 1 : -leadingZeros - 1) + exponent : 0;
  return end;
}

std::optional<double> ToDouble(const std::string& normal, int magnitude) {
  double v = 0;
  const char* first = normal.data();
  if (*first == '+') ++first;
  const auto [ptr, ec] = std::from_chars(first, normal.data() + normal.size(), v);
  if (ec == std::errc::result_out_of_range) {
    if (magnitude < 0) return 0.0;  // an underflow gives 0
    return std::nullopt;
  }
  if (ec != std::errc() || !std::isfinite(v)) return std::nullopt;
  return v;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view field, bool decimalComma) {
  const std::string t = Trim(field);
  std::string normal;
  int magnitude = 0;
  const std::size_t length = ScanNumber(t, decimalComma, normal, magnitude);
  if (length == 0 || length != t.size()) return std::nullopt;
  return ToDouble(normal, magnitude);
}

std::optional<double> LeadingNumber(std::string_view text, bool decimalComma) {
  const std::string t = Trim(text);
  std::string normal;
  int magnitude = 0;
  if (ScanNumber(t, decimalComma, normal, magnitude) == 0) return std::nullopt;
  return ToDouble(normal, magnitude);
}

ColumnTitle SplitColumnTitle(std::string_view title) {
  const std::string t = Trim(title);
  if (!t.empty() && (t.back() == ')' || t.back() == ']')) {
    const char open = t.back() == ')' ? '(' : '[';
    const std::size_t at = t.rfind(open);
    if (at != std::string::npos && at > 0)
      return {Trim(std::string_view(t).substr(0, at)), Trim(std::string_view(t).substr(at + 1, t.size() - at - 2))};
  }
  const std::size_t slash = t.rfind('/');
  if (slash != std::string::npos && slash > 0)
    return {Trim(std::string_view(t).substr(0, slash)), Trim(std::string_view(t).substr(slash + 1))};
  return {t, {}};
}

namespace {

// The first word of a unit text: "V vs. Ref." is in V.
std::string UnitWord(std::string_view unit) {
  const std::string t = Trim(unit);
  return t.substr(0, t.find_first_of(" \t"));
}

// "µ" as the micro sign or the Greek letter, or "u".
std::optional<std::string> WithoutMicro(const std::string& u) {
  for (std::string_view micro : {"\xC2\xB5", "\xCE\xBC", "u"})
    if (StartsWith(u, micro)) return u.substr(micro.size());
  return std::nullopt;
}

std::optional<double> Scaled(std::string_view unit, std::string_view base) {
  const std::string u = UnitWord(unit);
  if (u == base) return 1.0;
  if (u.size() == base.size() + 1 && u.substr(1) == base) {
    switch (u[0]) {
      case 'm': return 1e-3;
      case 'n': return 1e-9;
      case 'p': return 1e-12;
      case 'k': return 1e3;
      default: break;
    }
  }
  if (const auto rest = WithoutMicro(u); rest && *rest == base) return 1e-6;
  return std::nullopt;
}

// Lower case without blanks, angle brackets and an electrode prefix
// ("WE(1).Current" reads "current", "<I>" reads "i").
std::string Normalised(std::string_view quantity) {
  std::string q;
  for (char c : Lower(quantity))
    if (!IsBlank(c) && c != '<' && c != '>') q.push_back(c);
  if (StartsWith(q, "we(")) {
    const std::size_t dot = q.find(").");
    if (dot != std::string::npos) q = q.substr(dot + 2);
  }
  return q;
}

std::optional<int> RankIn(std::string_view quantity, std::initializer_list<std::initializer_list<std::string_view>> tiers,
                          std::string_view prefix) {
  const std::string q = Normalised(quantity);
  int rank = 0;
  for (const auto& tier : tiers) {
    for (std::string_view name : tier)
      if (q == name) return rank;
    ++rank;
  }
  if (StartsWith(q, prefix)) return rank;
  return std::nullopt;
}

}  // namespace

std::optional<double> PotentialUnit(std::string_view unit) { return Scaled(unit, "V"); }
std::optional<double> CurrentUnit(std::string_view unit) { return Scaled(unit, "A"); }

// The measured working-electrode potential first, then applied or staircase
// potentials; a counter-electrode or control column only when nothing else
// is there.
std::optional<int> PotentialRank(std::string_view quantity) {
  return RankIn(quantity,
                {{"ewe", "potential", "e", "vf", "vstep", "e_we"},
                 {"voltage", "u", "ecell", "potentialapplied", "appliedpotential", "vfwd", "estep"},
                 {"control", "vu"}},
                "potential");
}

// The total current, or for pulse techniques the difference current.
std::optional<int> CurrentRank(std::string_view quantity) {
  return RankIn(quantity, {{"i", "current", "im", "idif", "idiff", "i_diff", "idelta"}, {"inet", "net", "diff", "iwe", "i_we"}},
                "current");
}

}  // namespace voltrix
