#include "faults/exercise.h"

#include <span>
#include <string_view>

namespace arf_test {
namespace {

using arf::Database;
using arf::IndexRange;
using arf::Point;

std::uint64_t Read(std::string_view text)
{
  std::uint64_t sum = text.size();
  for (const char c : text) sum += static_cast<unsigned char>(c);
  return sum;
}

std::uint64_t Read(const Point& point)
{
  std::uint64_t sum = point.dpid + point.numberFirst + point.numberLast;
  for (const std::string_view text :
       {point.numberPrefix, point.numberFirstSuffix, point.numberLastSuffix, point.unitType, point.unitNumber,
        point.levelType, point.levelNumber, point.lot, point.building}) {
    sum += Read(text);
  }
  return sum + static_cast<std::uint32_t>(point.latitude) + static_cast<std::uint32_t>(point.longitude);
}

std::uint64_t ReadStreet(const Database& database, std::uint32_t index)
{
  const arf::Street street = database.StreetAt(index);
  std::uint64_t sum = Read(street.name) + Read(street.type) + Read(street.suffix);
  Point point;
  for (arf::PointCursor cursor = database.Points(street); cursor.Next(point);) sum += Read(point);
  for (const std::uint32_t number : {0U, 1U, 7U, 100U, UINT32_MAX - 1}) {
    for (arf::PointCursor cursor = database.PointsNumbered(street, number); cursor.Next(point);) sum += Read(point);
  }
  return sum;
}

std::uint64_t ReadLocality(const Database& database, std::uint32_t index)
{
  const arf::Locality locality = database.LocalityAt(index);
  std::uint64_t sum = Read(locality.name) + Read(locality.state) + Read(locality.postcode);
  sum += database.LocalitiesOfPostcode(locality.postcode).size();
  sum += database.PostalStreetsOf(locality).count + database.StreetsOf(locality.streets, 0U).count;
  return sum + database.FindLocalityName(locality.name).value_or(1);
}

std::uint64_t ReadNames(const Database& database)
{
  std::uint64_t sum = 0;
  for (std::uint32_t n = 0; n <= database.LocalityNameCount(); ++n) {
    sum += Read(database.LocalityName(n));
    for (const std::uint32_t locality : database.LocalitiesNamed(n)) sum += Read(database.LocalityAt(locality).name);
  }
  for (std::uint32_t n = 0; n <= database.StreetNameCount(); ++n) {
    const std::string_view name = database.StreetName(n);
    sum += Read(name) + database.FindStreetName(name).value_or(1);
    for (const std::uint32_t street : database.StreetsNamed(n)) {
      const arf::Locality locality = database.LocalityAt(database.StreetAt(street).locality);
      sum += Read(locality.name) + database.StreetsOf(locality.streets, name).count +
             database.StreetsOf(locality.streets, n).count;
    }
  }
  for (std::uint32_t n = 0; n <= database.PostcodeCount(); ++n) sum += Read(database.Postcode(n));
  return sum;
}

}  // namespace

std::uint64_t Exercise(const Database& database)
{
  std::uint64_t sum = database.FileSize() + ReadNames(database);
  for (std::uint32_t i = 0; i <= database.LocalityCount(); ++i) sum += ReadLocality(database, i);
  for (std::uint32_t i = 0; i <= database.StreetCount(); ++i) sum += ReadStreet(database, i);
  for (std::uint32_t i = 0; i <= database.PointCount(); ++i) {
    sum += Read(database.PointAt(i)) + database.FindDpid(database.DpidOf(i)).value_or(1);
    arf::AttributeText text;
    for (std::uint32_t column = 0; column <= database.AttributeCount() && column < 8; ++column) {
      sum += Read(database.AttributeOf(i, column, text));
    }
  }
  for (std::uint32_t i = 0; i <= database.AttributeCount(); ++i) sum += Read(database.AttributeName(i));
  for (std::uint32_t dpid = 0; dpid < 100'000'000; dpid += 777'777) sum += database.FindDpid(dpid).value_or(1);
  for (std::uint32_t i = 0; i <= database.InfoCount(); ++i) sum += Read(database.Info(database.InfoAt(i).key));
  for (std::uint32_t i = 0; i <= database.SectionCount(); ++i) sum += database.SectionAt(i).length;
  return sum;
}

}  // namespace arf_test
