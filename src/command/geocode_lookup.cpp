#include "command/geocode_lookup.h"

#include <cstdlib>
#include <cstring>

#include "command/parameter_reader.h"
#include "platform/bounded.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

constexpr std::size_t kFieldsBeforeGeocode = 42;
/** A record that begins with more delimiters than this holds no address. */
constexpr std::size_t kMostLeadingDelimiters = 6;
constexpr const char* kRangeProperty = "LatLongSearchRange";

struct Options
{
  int id = 0;
  bool latLong = false;
  bool unique = false;
  std::string range;
};

Options ReadOptions(char*& rest)
{
  Options options;
  for (Parameter parameter; ReadParameter(rest, parameter);) {
    if (parameter.Is("Id")) {
      options.id = std::atoi(parameter.value);
    } else if (parameter.Is("LatLong")) {
      options.latLong = IsTrue(parameter.value);
      if (options.latLong) options.unique = false;
    } else if (parameter.Is("Unique")) {
      options.unique = IsTrue(parameter.value);
    } else if (parameter.Is("Range")) {
      options.range = parameter.value;
    }
  }
  return options;
}

/** Finds the first address, in the given range if there is one, which is taken back after a success only. */
int FindFirst(const Options& options, const std::string& record, char* text, int size)
{
  char usualRange[64] = {};
  if (!options.range.empty()) {
    int status = pafGetPropertiesId(options.id, kRangeProperty, usualRange, static_cast<int>(sizeof usualRange));
    if (status == 0) status = pafSetPropertiesId(options.id, kRangeProperty, options.range.c_str());
    if (status != 0) return status;
  }
  const int status = pafGetAddressId(options.id, record.c_str(), text, SizeForLength(size));
  if (status != 0 || options.range.empty()) return status;
  return pafSetPropertiesId(options.id, kRangeProperty, usualRange);
}

bool HoldsAddress(const char* record, const Delimiter& delimiter)
{
  const std::size_t leading = std::strspn(record, delimiter.text);
  return leading <= kMostLeadingDelimiters && record[leading] != '\0';
}

/** Empties the answer when there is another address. */
int EmptyUnlessUnique(int id, const Delimiter& delimiter, char* text, int size)
{
  const std::string first = text;
  if (const int status = pafGetNextAddressId(id, text, SizeForLength(size)); status != 0) return status;
  CopyCut(text, Capacity(SizeForLength(size)), HoldsAddress(text, delimiter) ? "" : first);
  return PAF_OK;
}

}  // namespace

int ReadDelimiter(int id, Delimiter& delimiter)
{
  return pafGetPropertiesId(id, "Delimiter", delimiter.text, static_cast<int>(sizeof delimiter.text));
}

std::string Record(const Delimiter& delimiter, std::size_t fieldsBefore, const char* text)
{
  return std::string(fieldsBefore, delimiter.Character()) + text;
}

int LookupByGeocode(char* rest, char* text, int size)
{
  const Options options = ReadOptions(rest);
  Delimiter delimiter;
  if (const int status = ReadDelimiter(options.id, delimiter); status != 0) return status;
  char* const comma = options.latLong ? std::strchr(rest, ',') : nullptr;
  if (comma != nullptr) *comma = delimiter.Character();

  const std::string record = Record(delimiter, kFieldsBeforeGeocode, rest);
  if (const int status = FindFirst(options, record, text, size); status != 0 || !options.unique) return status;
  return EmptyUnlessUnique(options.id, delimiter, text, size);
}

}  // namespace qxpaf
