#include "batch_columns.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "exit_code.h"

namespace tool {
namespace {

/** What a column holds, in the order in which an address is written. */
enum class Part
{
  Whole,  ///< all of the address, last line included
  Building,
  Unit,
  Number,
  Street,
  StreetType,
  Line,          ///< street and number, perhaps with what stands above and below them
  NumberedLine,  ///< one of several lines
  Locality,
  State,
  Postcode,
  None
};

struct UsualName
{
  std::string_view name;  ///< letters and digits alone, in lower case
  Part part;
};

constexpr UsualName kUsualNames[] = {
    {"fulladdress", Part::Whole},
    {"wholeaddress", Part::Whole},
    {"completeaddress", Part::Whole},
    {"inputaddress", Part::Whole},
    {"rawaddress", Part::Whole},
    {"addresstext", Part::Whole},
    {"input", Part::Whole},
    {"building", Part::Building},
    {"buildingname", Part::Building},
    {"unit", Part::Unit},
    {"unitnumber", Part::Unit},
    {"unitno", Part::Unit},
    {"flat", Part::Unit},
    {"flatnumber", Part::Unit},
    {"apartment", Part::Unit},
    {"number", Part::Number},
    {"streetnumber", Part::Number},
    {"streetno", Part::Number},
    {"housenumber", Part::Number},
    {"houseno", Part::Number},
    {"numberfirst", Part::Number},
    {"street", Part::Street},
    {"streetname", Part::Street},
    {"road", Part::Street},
    {"streettype", Part::StreetType},
    {"address", Part::Line},
    {"addressline", Part::Line},
    {"addressline1", Part::NumberedLine},
    {"addressline2", Part::NumberedLine},
    {"addressline3", Part::NumberedLine},
    {"addressline4", Part::NumberedLine},
    {"address1", Part::NumberedLine},
    {"address2", Part::NumberedLine},
    {"address3", Part::NumberedLine},
    {"address4", Part::NumberedLine},
    {"addr", Part::Line},
    {"addr1", Part::NumberedLine},
    {"addr2", Part::NumberedLine},
    {"street1", Part::NumberedLine},
    {"street2", Part::NumberedLine},
    {"streetaddress", Part::Line},
    {"streetaddress1", Part::NumberedLine},
    {"streetaddress2", Part::NumberedLine},
    {"postaladdress", Part::Line},
    {"mailingaddress", Part::Line},
    {"deliveryaddress", Part::Line},
    {"locality", Part::Locality},
    {"localityname", Part::Locality},
    {"suburb", Part::Locality},
    {"town", Part::Locality},
    {"city", Part::Locality},
    {"state", Part::State},
    {"stateabbreviation", Part::State},
    {"stateterritory", Part::State},
    {"postcode", Part::Postcode},
    {"postalcode", Part::Postcode},
    {"pcode", Part::Postcode},
    {"zip", Part::Postcode},
    {"zipcode", Part::Postcode},
};

std::string Plain(std::string_view name)
{
  std::string plain;
  for (const char c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return plain;
}

Part PartOf(std::string_view name)
{
  const std::string plain = Plain(name);
  const auto* found = std::find_if(std::begin(kUsualNames), std::end(kUsualNames),
                                   [&plain](const UsualName& usual) { return usual.name == plain; });
  return found == std::end(kUsualNames) ? Part::None : found->part;
}

std::vector<std::size_t> ColumnsOf(const std::vector<std::string>& header, Part part)
{
  std::vector<std::size_t> numbers;
  for (std::size_t number = 0; number < header.size(); ++number) {
    if (PartOf(header[number]) == part) {
      numbers.push_back(number);
    }
  }
  return numbers;
}

/** Lines in the order of their numbers, which end their names. */
std::vector<std::size_t> NumberedLines(const std::vector<std::string>& header)
{
  std::vector<std::size_t> numbers = ColumnsOf(header, Part::NumberedLine);
  std::stable_sort(numbers.begin(), numbers.end(), [&header](std::size_t left, std::size_t right) {
    return Plain(header[left]).back() < Plain(header[right]).back();
  });
  return numbers;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right)
{
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string ListOf(const std::vector<std::string>& names)
{
  std::string list;
  for (const std::string& name : names) {
    list += (list.empty() ? "" : ", ") + name;
  }
  return list;
}

}  // namespace

AddressColumns::AddressColumns(const std::vector<std::string>& header, const std::vector<std::string>& chosen)
{
  if (!chosen.empty()) {
    Choose(header, chosen);
  } else if (header.size() == 1) {
    Add(header, 0);
  } else {
    Find(header);
  }
}

void AddressColumns::Choose(const std::vector<std::string>& header, const std::vector<std::string>& chosen)
{
  for (const std::string& name : chosen) {
    const auto found =
        std::find_if(header.begin(), header.end(), [&](const auto& known) { return EqualIgnoringCase(known, name); });
    if (found == header.end()) {
      throw Failure("there is no column \"" + name + "\"; the columns are: " + ListOf(header));
    }
    Add(header, static_cast<std::size_t>(found - header.begin()));
  }
}

void AddressColumns::Find(const std::vector<std::string>& header)
{
  if (const auto whole = ColumnsOf(header, Part::Whole); !whole.empty()) {
    Add(header, whole.front());
    return;
  }
  const auto addFirst = [&](Part part, std::string_view separator) {
    if (const auto numbers = ColumnsOf(header, part); !numbers.empty()) {
      Add(header, numbers.front(), separator);
    }
  };
  const auto lines = NumberedLines(header);
  addFirst(Part::Line, ", ");
  if (columns_.empty() && lines.empty()) {
    addFirst(Part::Building, ", ");
    addFirst(Part::Unit, "/");
    addFirst(Part::Number, " ");
    addFirst(Part::Street, " ");
    addFirst(Part::StreetType, ", ");
  }
  for (const std::size_t line : lines) {
    Add(header, line);
  }
  if (columns_.empty()) {
    throw Failure("no column has a name that addresses usually have; name them with --column. The columns are: " +
                  ListOf(header));
  }
  addFirst(Part::Locality, ", ");
  addFirst(Part::State, " ");
  addFirst(Part::Postcode, "");
}

void AddressColumns::Add(const std::vector<std::string>& header, std::size_t number, std::string_view separator)
{
  columns_.push_back({number, separator});
  names_.push_back(header[number]);
}

std::string AddressColumns::Join(const std::vector<std::string>& fields) const
{
  std::string address;
  std::string_view separator;
  for (const Column& column : columns_) {
    const std::string& field = fields[column.number];
    if (field.empty()) {
      continue;
    }
    address.append(separator).append(field);
    separator = column.separator;
  }
  return address;
}

}  // namespace tool
