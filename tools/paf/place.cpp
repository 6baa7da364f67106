#include "place.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

#include "exit_code.h"
#include "inputs.h"
#include "qxpaf/text/geometry.h"

namespace tool {
namespace {

constexpr const char* kSeparators = ", \t\r\n";

double Degrees(const std::string& text, double most, const std::string& place)
{
  double degrees = 0;
  const char* begin = text.data() + (text.starts_with('+') && !text.starts_with("+-") ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), degrees);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && std::isfinite(degrees);
  if (!isNumber || std::abs(degrees) > most) {
    throw Failure("\"" + place + "\" is no place: write latitude and longitude in degrees, as in -33.8568,151.2153");
  }
  return degrees;
}

std::string WithoutByteOrderMark(std::string text)
{
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) {
    text.erase(0, kMark.size());
  }
  return text;
}

}  // namespace

double GeoPlace::MetresTo(double otherLatitude, double otherLongitude) const
{
  return 1000 * LatLongDist(latitude, longitude, otherLatitude, otherLongitude);
}

GeoPlace ParsePlace(const std::vector<std::string>& texts)
{
  const std::string all = JoinWords(texts);
  const std::size_t begin = std::min(all.find_first_not_of(kSeparators), all.size());
  const std::size_t middle = std::min(all.find_first_of(kSeparators, begin), all.size());
  const std::size_t next = std::min(all.find_first_not_of(kSeparators, middle), all.size());
  const std::size_t last = all.find_last_not_of(kSeparators);
  GeoPlace place;
  place.latitudeText = all.substr(begin, middle - begin);
  place.longitudeText = next < all.size() ? all.substr(next, last + 1 - next) : "";
  place.latitude = Degrees(place.latitudeText, 90, all);
  place.longitude = Degrees(place.longitudeText, 180, all);
  return place;
}

std::string ReadFile(const std::string& path)
{
  std::ostringstream text;
  if (path == "-") {
    text << std::cin.rdbuf();
    return WithoutByteOrderMark(text.str());
  }
  std::ifstream file(path, std::ios::binary);
  if (file.is_open() && file.peek() != std::ifstream::traits_type::eof()) {
    text << file.rdbuf();
  }
  if (!file.is_open() || file.bad()) {
    throw Failure(path + ": " + std::strerror(errno));
  }
  return WithoutByteOrderMark(text.str());
}

}  // namespace tool
