#include "arf/spatial/polygon_text.h"

#include <charconv>
#include <cmath>

namespace arf {
namespace {

constexpr std::string_view kNotFinite = "A coordinate is not a finite number.";
constexpr std::string_view kOffGlobe = "A latitude is beyond 90 degrees, or a longitude beyond 180.";
constexpr std::string_view kNoNumber = "A number is expected where there is none.";
constexpr std::string_view kOdd = "A latitude has no longitude.";
constexpr std::string_view kTooFew = "A ring has fewer than three vertices.";
constexpr std::string_view kTooMany = "The polygon has more than 32,768 vertices.";
constexpr std::string_view kUnbalanced = "The brackets do not fit.";
constexpr std::string_view kOtherShape = "Only POLYGON and MULTIPOLYGON are areas.";
constexpr std::string_view kOtherSystem = "Only SRID 4326, degrees of latitude and longitude, is read.";

bool IsSpace(char c)
{
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsLetter(char c)
{
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsListSeparator(char c)
{
  return IsSpace(c) || c == ',' || c == ';';
}

/** Takes parts off the front of a text. The first fault stays. */
class Scanner
{
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  template <class IsSkipped>
  void Skip(IsSkipped isSkipped)
  {
    while (!rest_.empty() && isSkipped(rest_.front())) rest_.remove_prefix(1);
  }
  bool AtEnd() const { return rest_.empty(); }
  bool Begins(char c) const { return !rest_.empty() && rest_.front() == c; }
  /** Whether a character stands next, which is then taken, with the white space around it. */
  bool Take(char c)
  {
    Skip(IsSpace);
    if (!Begins(c)) return false;
    rest_.remove_prefix(1);
    Skip(IsSpace);
    return true;
  }
  /** Takes a word, ignoring case; nothing where another one stands there. */
  bool TakeWord(std::string_view upper)
  {
    Skip(IsSpace);
    if (rest_.size() < upper.size()) return false;
    for (std::size_t i = 0; i < upper.size(); ++i) {
      const char c = rest_[i];
      if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != upper[i]) return false;
    }
    if (rest_.size() > upper.size() && IsLetter(upper.back()) && IsLetter(rest_[upper.size()])) return false;
    rest_.remove_prefix(upper.size());
    return true;
  }
  bool TakeNumber(double& number)
  {
    if (Begins('+')) rest_.remove_prefix(1);
    const auto [end, fault] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (fault == std::errc::result_out_of_range) return Fail(kNotFinite);
    if (fault != std::errc()) return Fail(kNoNumber);
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return std::isfinite(number) || Fail(kNotFinite);
  }
  bool Fail(std::string_view fault)
  {
    if (fault_.empty()) fault_ = fault;
    return false;
  }
  std::string_view Fault() const { return fault_; }

 private:
  std::string_view rest_;
  std::string_view fault_;
};

/** Puts vertices together to a ring. */
class RingBuilder
{
 public:
  RingBuilder(Scanner& scanner, Polygon& polygon) : scanner_(scanner), polygon_(polygon) {}

  bool Add(double latitude, double longitude)
  {
    GeoPoint point;
    if (!ToGeoPoint(latitude, longitude, point)) return scanner_.Fail(kOffGlobe);
    if (count_ == 0) first_ = point;
    const bool isNew = count_ == 0 || !(point == last_);
    if (count_ > 0 && isNew && !polygon_.AddEdge(last_, point)) return scanner_.Fail(kTooMany);
    last_ = point;
    ++count_;
    return true;
  }

  /** Closes the ring. Rings of three vertices and more may have no area. */
  bool Close()
  {
    if (count_ < 3) return scanner_.Fail(kTooFew);
    if (last_ == first_) return true;
    return polygon_.AddEdge(last_, first_) || scanner_.Fail(kTooMany);
  }

  bool IsEmpty() const { return count_ == 0; }

 private:
  Scanner& scanner_;
  Polygon& polygon_;
  GeoPoint first_, last_;
  std::size_t count_ = 0;
};

/** A latitude, separators, a longitude. */
bool TakePair(Scanner& scanner, double& latitude, double& longitude)
{
  if (!scanner.TakeNumber(latitude)) return false;
  scanner.Skip(IsListSeparator);
  if (scanner.AtEnd() || scanner.Begins('|')) return scanner.Fail(kOdd);
  return scanner.TakeNumber(longitude);
}

bool ReadListRing(Scanner& scanner, Polygon& polygon)
{
  RingBuilder ring(scanner, polygon);
  scanner.Skip(IsListSeparator);
  while (!scanner.AtEnd() && !scanner.Begins('|')) {
    double latitude, longitude;
    if (!TakePair(scanner, latitude, longitude) || !ring.Add(latitude, longitude)) return false;
    scanner.Skip(IsListSeparator);
  }
  return ring.Close();
}

bool ReadList(Scanner& scanner, Polygon& polygon)
{
  do {
    if (!ReadListRing(scanner, polygon)) return false;
  } while (scanner.Take('|'));
  return true;
}

bool ReadTextVertex(Scanner& scanner, RingBuilder& ring)
{
  double longitude, latitude;
  scanner.Skip(IsSpace);
  if (!scanner.TakeNumber(longitude)) return false;
  scanner.Skip(IsSpace);
  if (scanner.Begins(',') || scanner.Begins(')')) return scanner.Fail(kOdd);
  if (!scanner.TakeNumber(latitude)) return false;
  scanner.Skip(IsSpace);
  while (!scanner.AtEnd() && !scanner.Begins(',') && !scanner.Begins(')')) {
    double further;
    if (!scanner.TakeNumber(further)) return false;
    scanner.Skip(IsSpace);
  }
  return ring.Add(latitude, longitude);
}

bool ReadTextRing(Scanner& scanner, Polygon& polygon)
{
  RingBuilder ring(scanner, polygon);
  do {
    if (!ReadTextVertex(scanner, ring)) return false;
  } while (scanner.Take(','));
  return ring.Close();
}

/** A list in brackets, each entry read by `readEntry`. */
template <class ReadEntry>
bool ReadBracketed(Scanner& scanner, ReadEntry readEntry)
{
  if (!scanner.Take('(')) return scanner.Fail(kUnbalanced);
  do {
    if (!readEntry()) return false;
  } while (scanner.Take(','));
  return scanner.Take(')') || scanner.Fail(kUnbalanced);
}

bool ReadTextPolygon(Scanner& scanner, Polygon& polygon)
{
  return ReadBracketed(scanner, [&] { return ReadBracketed(scanner, [&] { return ReadTextRing(scanner, polygon); }); });
}

/** A shape's name, perhaps with the mark of its further coordinates behind it or run together with it. */
bool TakeShape(Scanner& scanner, std::string_view name, std::string_view withBoth, std::string_view withHeight,
               std::string_view withMeasure)
{
  if (scanner.TakeWord(withBoth) || scanner.TakeWord(withHeight) || scanner.TakeWord(withMeasure)) return true;
  if (!scanner.TakeWord(name)) return false;
  static_cast<void>(scanner.TakeWord("ZM") || scanner.TakeWord("Z") || scanner.TakeWord("M"));
  return true;
}

bool ReadWellKnownText(Scanner& scanner, Polygon& polygon)
{
  const bool isMulti = TakeShape(scanner, "MULTIPOLYGON", "MULTIPOLYGONZM", "MULTIPOLYGONZ", "MULTIPOLYGONM");
  if (!isMulti && !TakeShape(scanner, "POLYGON", "POLYGONZM", "POLYGONZ", "POLYGONM")) return scanner.Fail(kOtherShape);
  if (scanner.TakeWord("EMPTY")) return true;
  const auto readOne = [&] { return ReadTextPolygon(scanner, polygon); };
  return isMulti ? ReadBracketed(scanner, readOne) : readOne();
}

bool ReadShape(Scanner& scanner, Polygon& polygon, bool hasLetters)
{
  if (scanner.TakeWord("SRID=")) {
    if (!scanner.TakeWord("4326") || !scanner.Take(';')) return scanner.Fail(kOtherSystem);
    hasLetters = true;
  }
  const bool isRead = hasLetters ? ReadWellKnownText(scanner, polygon) : ReadList(scanner, polygon);
  scanner.Skip(IsSpace);
  return isRead && (scanner.AtEnd() || scanner.Fail(kUnbalanced));
}

/** Whether a text begins as well-known text does, and not with a number ("nan" and "inf" are numbers). */
bool BeginsWithName(std::string_view text)
{
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return false;
  const std::string_view rest = text.substr(first);
  std::size_t letters = 0;
  while (letters < rest.size() && IsLetter(rest[letters])) ++letters;
  double number;
  return letters > 0 && std::from_chars(rest.data(), rest.data() + rest.size(), number).ec != std::errc();
}

}  // namespace

std::string_view ReadPolygon(std::string_view text, Polygon& polygon)
{
  polygon.Clear();
  Scanner scanner(text);
  scanner.Skip(IsSpace);
  if (ReadShape(scanner, polygon, BeginsWithName(text))) return {};
  polygon.Clear();
  return scanner.Fault();
}

std::string_view ReadPlace(std::string_view text, GeoPoint& place)
{
  Scanner scanner(text);
  scanner.Skip(IsListSeparator);
  double latitude, longitude;
  if (!TakePair(scanner, latitude, longitude)) return scanner.Fault();
  scanner.Skip(IsListSeparator);
  if (!scanner.AtEnd()) return kNoNumber;
  return ToGeoPoint(latitude, longitude, place) ? std::string_view() : kOffGlobe;
}

}  // namespace arf
