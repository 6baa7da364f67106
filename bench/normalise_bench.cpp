// Text clean-up, packing and geometry beside the plain transcriptions of the
// tests, ICU's title case and the bare formula of the distance. Functions in
// place work on a fresh copy in storage that is reused.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "measure.h"
#include "qxpaf/text/geometry.h"
#include "qxpaf/text/normalise.h"
#include "qxpaf/text/packing.h"
#include "reference/geometry_reference.h"
#include "reference/normalise_reference.h"
#include "reference/packing_reference.h"

#ifdef QXPAF_BENCH_ICU
#include <unicode/ubrk.h>
#include <unicode/ucasemap.h>

#include <stdexcept>
#endif

namespace {

using bench::Measure;

// ---- Clean-up
// -------------------------------------------------------------------------------------------------------

template <class CleanUp>
auto InPlace(CleanUp cleanUp)
{
  return [cleanUp](const std::string& text) {
    static std::string buffer;
    buffer.assign(text);
    cleanUp(buffer.data());
    return buffer.data();
  };
}

void RegisterCleanUp()
{
  static const bench::Inputs<std::string> brackets = {
      {"brackets line", {"12 (rear) OLD NORTHERN RD [lot 2] CASTLE HILL", "{Shop 4} (159-175 CHURCH ST) PARRAMATTA"}},
      {"nested 100 KB", {std::string(50000, '(') + std::string(50000, ')')}}};
  const auto& texts = bench::AddressTexts();
  Measure("TitleCase", texts, InPlace(TitleCase));
  Measure("TitleCase", texts, "plain", reference::TitleCase);
  Measure("TitleCaseUtf8", texts, InPlace(TitleCaseUtf8));
  Measure("TitleCaseUtf8", texts, "plain", reference::TitleCaseUtf8);
  Measure("RemovePunctuationForIndex", texts, InPlace([](char* s) { RemovePunctuationForIndex(s, '\''); }));
  Measure("RemovePunctuationForIndex", texts, "plain",
          [](const std::string& s) { return reference::RemovePunctuationForIndex(s, '\''); });
  Measure("RemoveInBrackets", brackets, InPlace(RemoveInBrackets));
}

#ifdef QXPAF_BENCH_ICU
// With a break iterator that is made once, as a careful caller would.
class IcuTitleCase
{
 public:
  IcuTitleCase() : map_(ucasemap_open("", 0, &status_))
  {
    ucasemap_setBreakIterator(map_, ubrk_open(UBRK_WORD, "", nullptr, 0, &status_),
                              &status_);  // which it owns
    Check();
  }
  IcuTitleCase(const IcuTitleCase&) = delete;
  IcuTitleCase& operator=(const IcuTitleCase&) = delete;
  ~IcuTitleCase() { ucasemap_close(map_); }

  std::int32_t Convert(const std::string& s)
  {
    out_.resize(std::max(out_.size(), 2 * s.size()));
    const auto length = ucasemap_utf8ToTitle(map_, out_.data(), static_cast<std::int32_t>(out_.size()), s.data(),
                                             static_cast<std::int32_t>(s.size()), &status_);
    Check();
    return length;
  }

 private:
  void Check() const
  {
    if (U_FAILURE(status_)) throw std::runtime_error(u_errorName(status_));
  }

  UErrorCode status_ = U_ZERO_ERROR;
  UCaseMap* map_;
  std::string out_;
};

void RegisterIcu()
{
  const auto convert = [](const std::string& s) {
    static IcuTitleCase titleCase;
    return titleCase.Convert(s);
  };
  for (const char* function : {"TitleCase", "TitleCaseUtf8"}) Measure(function, bench::AddressTexts(), "icu", convert);
}
#else
void RegisterIcu() {}
#endif

// ---- Packing
// --------------------------------------------------------------------------------------------------------

using bench::kMegabyte;

char* Room()
{
  static std::vector<char> room(kMegabyte);
  return room.data();
}

// The work is called through a pointer that the compiler cannot look through,
// or it would bend the plain loops to the constants of this file.
template <class Function>
Function Hidden(Function function)
{
  Function volatile hidden = function;
  return hidden;
}

using Packer = unsigned long (*)(char*, unsigned long, const char*, unsigned long);
using Unpacker = void (*)(char*, const char*, int);

auto Pack(Packer pack)
{
  return [pack = Hidden(pack)](const std::string& s) { return pack(Room(), kMegabyte, s.data(), s.size()); };
}

struct PackedText
{
  std::string bytes;
  int count;
};

auto Unpack(Unpacker unpack)
{
  return [unpack = Hidden(unpack)](const PackedText& packed) {
    unpack(Room(), packed.bytes.data(), packed.count);
    return Room();
  };
}

PackedText PackedOf(const std::string& s)
{
  std::string bytes(s.size(), '\0');
  bytes.resize(Compress6(bytes.data(), bytes.size(), s.data(), s.size()));
  return {bytes, static_cast<int>(s.size())};
}

// Text of the six-bit alphabet.
std::string Storable(std::size_t size)
{
  const std::string line = "UNIT 12 345-347 OLD NORTHERN RD CASTLE HILL ";
  return bench::Repeated(line, size + line.size()).substr(0, size);
}

void RegisterPacking()
{
  static const bench::Inputs<std::string> texts = {{"30 byte line", {Storable(30)}},
                                                   {"45 byte line", {Storable(45)}},
                                                   {"60 byte line", {Storable(60)}},
                                                   {"1 MB", {Storable(kMegabyte)}}};
  static const auto packed = bench::Converted(texts, PackedOf);
  Measure("Compress6", texts, Pack(Compress6));
  Measure("Compress6", texts, "plain", Pack(reference::Compress6));
  Measure("Decompress6", packed, Unpack(Decompress6));
  Measure("Decompress6", packed, "plain", Unpack(reference::Decompress6));
  const auto five = [](long (*pack)(char*, unsigned long, const char*, unsigned long)) {
    return [pack = Hidden(pack)](const std::string& s) { return pack(Room(), kMegabyte, s.data(), s.size()); };
  };
  Measure("Compress5", texts, five(Compress5));
  Measure("Compress5", texts, "plain", five(reference::Compress5));
}

// ---- Geometry
// -------------------------------------------------------------------------------------------------------

constexpr double kRadians = 0.017453292519943295;

// Without the tests around it.
double Formula(double lat1, double lon1, double lat2, double lon2)
{
  return std::acos(std::sin(lat1 * kRadians) * std::sin(lat2 * kRadians) +
                   std::cos(lat1 * kRadians) * std::cos(lat2 * kRadians) *
                       std::cos(lon2 * kRadians - lon1 * kRadians)) *
         6371.0;
}

using Points = std::array<double, 4>;
using Distance = double (*)(double, double, double, double);

// Up to so many degrees apart, within Australia.
std::vector<Points> PointsWithin(double degrees)
{
  std::mt19937 random(1);
  std::uniform_real_distribution<double> latitude(-43, -11), longitude(113, 153), offset(-degrees, degrees);
  std::vector<Points> out(1024);
  for (Points& p : out) {
    p[0] = latitude(random);
    p[1] = longitude(random);
    p[2] = p[0] + offset(random);
    p[3] = p[1] + offset(random);
  }
  return out;
}

auto Between(Distance distance)
{
  return [distance = Hidden(distance)](const Points& p) { return distance(p[0], p[1], p[2], p[3]); };
}

void RegisterGeometry()
{
  static const bench::Inputs<Points> points = {{"near points", PointsWithin(0.05)}, {"far points", PointsWithin(20)}};
  Measure("LatLongDist", points, Between(LatLongDist));
  Measure("LatLongDist", points, "formula", Between(Formula));
  Measure("LatLongDist", points, "plain", Between(reference::LatLongDist));
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterCleanUp();
  RegisterIcu();
  RegisterPacking();
  RegisterGeometry();
  return bench::Run(argc, argv);
}
