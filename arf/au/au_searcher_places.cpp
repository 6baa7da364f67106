// Searches by place: geocodes, polygons, statistics, concordances and geographical codes.
#include <algorithm>
#include <limits>

#include "arf/au/address_record.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"
#include "arf/format/ascii.h"
#include "arf/match/last_line.h"
#include "arf/match/locality_query.h"
#include "arf/spatial/polygon_text.h"

namespace arf {
namespace {

CountedIn CountedInOf(std::string_view name)
{
  struct Row
  {
    std::string_view name;
    CountedIn in;
  };
  constexpr Row kRows[] = {{"Polygon", CountedIn::Polygon},
                           {"Radius", CountedIn::Radius},
                           {"Postcode", CountedIn::Postcode},
                           {"Locality", CountedIn::Locality},
                           {"State", CountedIn::State}};
  const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                [name](const Row& r) { return EqualIgnoringCase(r.name, name); });
  return row == std::end(kRows) ? CountedIn::Unknown : row->in;
}

/** What is wrong with a last line that shall be a postcode or a state and nothing else; empty: nothing. */
std::string_view FaultOf(CountedIn in, const Tail& line)
{
  const bool isPlace = line.localityEnd == 0;
  const bool hasState = !line.place.state.empty(), hasPostcode = !line.place.postcode.Empty();
  if (in == CountedIn::Postcode && !(isPlace && hasPostcode && !hasState))
    return "The second text is no postcode: four digits.";
  if (in == CountedIn::State && !(isPlace && hasState && !hasPostcode))
    return "The second text is no state, such as VIC.";
  return {};
}

GeoPoint MiddleOf(const GeoBox& box)
{
  const auto middle = [](std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>((std::int64_t{a} + b) / 2);
  };
  return {middle(box.south, box.north), middle(box.west, box.east)};
}

/** Callers may pass numbers as well: no text lies at addresses so small, nor at negative ones. */
bool MayBeText(std::intptr_t argument)
{
  constexpr std::intptr_t kFirstAddress = 0x10000;
  return argument == 0 || argument >= kFirstAddress;
}

const char* TextAt(std::intptr_t argument)
{
  return reinterpret_cast<const char*>(argument);  // NOLINT(performance-no-int-to-ptr): the interface passes texts so
}

void Append(BoundedText& out, std::uint64_t number)
{
  out << static_cast<std::uint32_t>(std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

int AuSearcher::SetGeographicalCodes(const char* codes, char* errText, int errSize)
{
  return SetProperties("GeographicalCodes", codes, errText, errSize);
}

int AuSearcher::StartNear(std::string_view latitude, std::string_view longitude)
{
  FixedText<128> text(latitude);
  text.Append(" ");
  GeoPoint centre;
  const bool isWhole = text.Append(longitude);
  const std::string_view fault =
      isWhole ? ReadPlace(text.View(), centre) : std::string_view("A coordinate is too long.");
  if (!fault.empty()) return FailQuery(PAF_AU_ERR_BAD_PLACE, fault);
  PlaceSearches& places = searches_->places;
  if (places.tree.PointCount() == 0) return FailQuery(PAF_AU_ERR_NO_PLACES, std::string_view());
  if (const int status = CheckFilters(); status != 0) return status;
  places.near.StartNear(centre, settings_.search.rangeMetres, places.addressFilter.Configure(settings_.search));
  if (!places.near.Current()) {
    FixedText<128> detail("There is no address within ");
    detail.Append(settings_.search.rangeText.View());
    detail.Append(" metres.");
    findStatus_ = PAF_AU_FIND_NOTHING;
    return lastFailure_.Record(PAF_AU_ERR_NOTHING_NEAR, detail.View());
  }
  findStatus_ = PAF_AU_FIND_MATCHED;
  searches_->addresses.StartArea(places.near);
  return 0;
}

int AuSearcher::BeginPolygonSearch(const char* text1, const char* text2)
{
  return Guarded([&] {
    if (!IsOpen()) return NotOpen();
    PlaceSearches& places = searches_->places;
    places.polygon.Reset();
    if (places.tree.PointCount() == 0) return FailQuery(PAF_AU_ERR_NO_PLACES, std::string_view());
    Polygon& area = places.polygon.Area();
    std::string_view fault = ReadPolygon(TextOf(text1), area);
    if (!fault.empty()) return FailQuery(PAF_AU_ERR_BAD_POLYGON, fault);
    const std::string_view written = Trimmed(TextOf(text2));
    GeoPoint centre = area.Edges().empty() ? GeoPoint() : MiddleOf(area.Bounds());
    if (!written.empty()) fault = ReadPlace(written, centre);
    if (!fault.empty()) return FailQuery(PAF_AU_ERR_BAD_PLACE, fault);
    if (const int status = CheckFilters(); status != 0) return status;
    places.polygon.StartPolygon(centre, places.polygonFilter.Configure(settings_.search));
    findStatus_ = places.polygon.Current() ? PAF_AU_FIND_MATCHED : PAF_AU_FIND_NOTHING;
    return 0;
  });
}

int AuSearcher::GetNextAddressInPolygon(char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    AreaSearch& polygon = searches_->places.polygon;
    if (!polygon.IsStarted()) return lastFailure_.Record(PAF_AU_ERR_NO_ENUMERATION, std::string_view());
    const FoundPoint* found = polygon.Current();
    if (!found) {
      AppendEmptyRecord(text, settings_.outputFields, settings_.delimiter);
      return 0;
    }
    AppendAddressRecord(text, *searches_->data, found->ordinal, settings_.outputFields, settings_.delimiter);
    if (text.IsWhole()) polygon.Advance();
    return 0;
  });
}

int AuSearcher::GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4,
                                    char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    if (!Trimmed(TextOf(text4)).empty())
      return FailQuery(PAF_AU_ERR_BAD_STATISTICS, "The fourth text is reserved and must be empty.");
    if (const int status = CheckFilters(); status != 0) return status;
    searches_->places.statistics.Clear();
    const int status = Count(Trimmed(TextOf(text1)), Trimmed(TextOf(text2)), Trimmed(TextOf(text3)));
    if (status != 0) return status;
    const PlaceStatistics& statistics = searches_->places.statistics;
    findStatus_ = statistics.Addresses() > 0 ? PAF_AU_FIND_MATCHED : PAF_AU_FIND_NOTHING;
    Append(text, statistics.Addresses());
    text << settings_.delimiter << statistics.Streets() << settings_.delimiter << statistics.Localities();
    return 0;
  });
}

int AuSearcher::Count(std::string_view in, std::string_view what, std::string_view metres)
{
  const CountedIn countedIn = CountedInOf(in);
  if (!metres.empty() && countedIn != CountedIn::Radius)
    return FailQuery(PAF_AU_ERR_BAD_STATISTICS, "The third text is the metres of a Radius.");
  switch (countedIn) {
    case CountedIn::Polygon:
    case CountedIn::Radius:
      return CountInArea(countedIn == CountedIn::Polygon, what, metres);
    case CountedIn::Postcode:
    case CountedIn::Locality:
    case CountedIn::State:
      return CountInLocalities(countedIn, what);
    case CountedIn::Unknown:
      break;
  }
  return FailQuery(PAF_AU_ERR_BAD_STATISTICS, std::string_view());
}

int AuSearcher::CountInArea(bool inPolygon, std::string_view what, std::string_view metres)
{
  PlaceSearches& places = searches_->places;
  if (places.tree.PointCount() == 0) return FailQuery(PAF_AU_ERR_NO_PLACES, std::string_view());
  PointFilter* filter = places.countFilter.Configure(settings_.search);
  const auto count = [&](std::uint32_t ordinal) { places.statistics.AddPoint(ordinal); };
  if (inPolygon) {
    const std::string_view fault = ReadPolygon(what, places.counted.Area());
    if (!fault.empty()) return FailQuery(PAF_AU_ERR_BAD_POLYGON, fault);
    places.counted.VisitPolygon(filter, count);
    return 0;
  }
  GeoPoint centre;
  SearchSettings range = settings_.search;
  std::string_view fault = ReadPlace(what, centre);
  if (fault.empty() && !metres.empty()) fault = SetRange(metres, range);
  if (!fault.empty()) return FailQuery(PAF_AU_ERR_BAD_PLACE, fault);
  places.counted.VisitNear(centre, range.rangeMetres, filter, count);
  return 0;
}

/** The localities of a postcode or state, or of a name; there may be none. */
int AuSearcher::FindCounted(CountedIn in, std::string_view line, std::vector<std::uint32_t>& found)
{
  if (const int status = ReadQuery(line); status != 0) return status;
  const InputText& query = searches_->query;
  const Database& data = searches_->Data();
  const Tail barest = *Tails(query).begin();
  if (const std::string_view fault = FaultOf(in, barest); !fault.empty())
    return FailQuery(PAF_AU_ERR_BAD_STATISTICS, fault);
  FindLocalities(*searches_->data->engine, query, found);
  const auto isOther = [&](std::uint32_t locality) {
    if (in != CountedIn::Locality) return !barest.place.Fits(data.LocalityAt(locality));
    return barest.localityEnd == 0 &&
           data.LocalityName(data.LocalityNameIndex(locality)) != query.Text(0, query.Count());
  };
  found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
  if (in == CountedIn::Locality && barest.localityEnd == 0 && found.empty())
    return FailQuery(PAF_AU_ERR_BAD_STATISTICS, "The second text names no locality.");
  return 0;
}

int AuSearcher::CountInLocalities(CountedIn in, std::string_view line)
{
  PlaceSearches& places = searches_->places;
  if (const int status = FindCounted(in, line, places.localities); status != 0) return status;
  PointFilter* filter = places.countFilter.Configure(settings_.search);
  const Database& data = searches_->Data();
  for (const std::uint32_t index : places.localities) {
    const IndexRange streets = data.LocalityStreets(index);
    for (std::uint32_t i = 0; i < streets.count; ++i) {
      if (!filter) {
        places.statistics.AddStreet(streets.first + i);
        continue;
      }
      const IndexRange points = data.StreetAt(streets.first + i).points;
      for (std::uint32_t p = 0; p < points.count; ++p)
        if (!data.IsAddressAlias(points.first + p) && filter->Takes(points.first + p))
          places.statistics.AddPoint(points.first + p);
    }
  }
  return 0;
}

int AuSearcher::BeginGifConcordance(std::intptr_t a, std::intptr_t b, std::intptr_t c, std::intptr_t d, std::intptr_t e,
                                    int n)
{
  return Guarded([&] {
    if (!IsOpen()) return NotOpen();
    Concordance& concordance = searches_->places.concordance;
    concordance.Reset();
    if (!MayBeText(a) || !MayBeText(b) || !MayBeText(c))
      return FailQuery(PAF_AU_ERR_BAD_CONCORDANCE, "A number is no text.");
    if (d != 0 || e != 0)
      return FailQuery(PAF_AU_ERR_BAD_CONCORDANCE, "The fourth and fifth argument are reserved and must be 0.");
    if (n < 0 || n > 100)
      return FailQuery(PAF_AU_ERR_BAD_CONCORDANCE, "The least percentage is a whole number from 0 to 100.");
    const auto from = FindCodeKind(searches_->Data(), Trimmed(TextOf(TextAt(a))));
    const auto to = FindCodeKind(searches_->Data(), Trimmed(TextOf(TextAt(c))));
    if (!from || !to) return FailQuery(PAF_AU_ERR_BAD_CONCORDANCE, std::string_view());
    const double percent = n > 0 ? n : static_cast<double>(settings_.search.minimumPercent);
    concordance.Start(*from, Trimmed(TextOf(TextAt(b))), *to, percent);
    findStatus_ = concordance.Current() ? PAF_AU_FIND_MATCHED : PAF_AU_FIND_NOTHING;
    return 0;
  });
}

int AuSearcher::GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void* detail)
{
  const auto next = [&](BoundedText& first, BoundedText& second) {
    if (!IsOpen()) return NotOpen();
    Concordance& concordance = searches_->places.concordance;
    if (!concordance.IsStarted()) return lastFailure_.Record(PAF_AU_ERR_NO_ENUMERATION, std::string_view());
    PafAuConcordance weight = {0, 0, 0};
    if (const Correspondence* found = concordance.Current()) {
      CodeText text;
      first << concordance.FromCode(*found, text);
      second << concordance.ToCode(*found, text);
      if (!first.IsWhole() || !second.IsWhole()) return static_cast<int>(PAF_ERR_BUFFER_TOO_SMALL);
      weight = {found->addresses, found->total, found->Percent()};
      concordance.Advance();
    }
    if (detail) *static_cast<PafAuConcordance*>(detail) = weight;
    return 0;
  };
  BoundedText second(out2, size2);
  const int status = Answer(out1, size1, [&](BoundedText& first) { return next(first, second); });
  if (status != 0) second.Clear();
  return status;
}

}  // namespace arf
