#include "arf/build/address_order.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <tuple>

#include "arf/format/fold.h"

namespace arf {
namespace {

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

/** Takes the digits at the front of `text`, without leading zeros. */
std::string_view TakeDigits(std::string_view& text)
{
  const auto* end = std::find_if_not(text.begin(), text.end(), IsDigit);
  std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

/** Negative, zero or positive, by value runs and bytes; "7" and "07" are equal here. */
int CompareNaturally(std::string_view a, std::string_view b)
{
  while (!a.empty() && !b.empty()) {
    if (IsDigit(a[0]) && IsDigit(b[0])) {
      const std::string_view x = TakeDigits(a), y = TakeDigits(b);
      if (x.size() != y.size()) return x.size() < y.size() ? -1 : 1;
      if (const int order = x.compare(y)) return order;
    } else {
      if (a[0] != b[0]) return a.substr(0, 1).compare(b.substr(0, 1));
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

/** Sorts a list in place. Returns each old place's new one. */
template <class Entry, class Less>
std::vector<std::uint32_t> SortEntries(std::vector<Entry>& entries, Less less)
{
  std::vector<std::uint32_t> order(entries.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return less(entries[a], entries[b]); });
  std::vector<Entry> sorted;
  sorted.reserve(entries.size());
  for (const std::uint32_t place : order) sorted.push_back(entries[place]);
  entries = std::move(sorted);
  return Inverse(order);
}

/** For each owner, the place of its first entry in a list that is sorted by owner and has some for every owner. */
template <class Entry, class OwnerOf>
std::vector<std::uint32_t> FirstOf(const std::vector<Entry>& entries, std::size_t owners, OwnerOf ownerOf)
{
  std::vector<std::uint32_t> first(owners);
  for (std::size_t i = entries.size(); i-- > 0;) first[ownerOf(entries[i])] = static_cast<std::uint32_t>(i);
  return first;
}

/** A dictionary of what `textOf` gives for the items 0 … count − 1; items whose text is kNoIndex are not in it. */
template <class TextOf>
SortedDictionary MakeDictionary(const std::vector<std::uint32_t>& ranks, std::uint32_t count, TextOf textOf)
{
  std::vector<std::pair<std::uint32_t, std::uint32_t>> items;  // text's rank, item
  for (std::uint32_t item = 0; item < count; ++item) {
    if (textOf(item) != kNoIndex) items.emplace_back(ranks[textOf(item)], item);
  }
  std::sort(items.begin(), items.end());
  SortedDictionary dictionary;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i == 0 || items[i].first != items[i - 1].first) {
      dictionary.texts.push_back(textOf(items[i].second));
      dictionary.firstPosting.push_back(static_cast<std::uint32_t>(i));
    }
    dictionary.postings.push_back(items[i].second);
  }
  return dictionary;
}

/** For each posting, the index of its text in the dictionary; kNoIndex for what is not in it. */
std::vector<std::uint32_t> TextIndexes(const SortedDictionary& dictionary, std::size_t count)
{
  std::vector<std::uint32_t> indexes(count, kNoIndex);
  std::uint32_t text = 0;
  for (std::uint32_t i = 0; i < dictionary.postings.size(); ++i) {
    while (text + 1 < dictionary.texts.size() && dictionary.firstPosting[text + 1] <= i) ++text;
    indexes[dictionary.postings[i]] = text;
  }
  return indexes;
}

class Orderer
{
 public:
  explicit Orderer(AddressTable& table) : table_(table) {}

  OrderedAddresses Run()
  {
    table_.DropEmpty();
    MakeKeys();
    OrderLocalities();
    OrderStreets();
    OrderRows();
    ordered_.aliases = FindAliases(table_);
    return std::move(ordered_);
  }

 private:
  void MakeKeys()
  {
    keyOf_.assign(table_.names.Count(), kNoIndex);
    for (const LocalityEntry& locality : table_.localities) MakeKey(locality.name);
    for (const StreetEntry& street : table_.streets) MakeKey(street.name);
    nameRanks_ = table_.names.Ranks();
    keyRanks_ = ordered_.keys.Ranks();
  }

  void MakeKey(std::uint32_t name)
  {
    if (name == 0 || keyOf_[name] != kNoIndex) return;
    keyOf_[name] = ordered_.keys.Intern(MatchKey(table_.names.At(name)));
  }

  /** Sorts by key, then by the name itself. Nothing comes before everything. */
  std::pair<std::uint32_t, std::uint32_t> NameOrder(std::uint32_t name) const
  {
    return name == 0 ? std::pair(0U, 0U) : std::pair(keyRanks_[keyOf_[name]], nameRanks_[name]);
  }

  void OrderLocalities()
  {
    const auto rank = [this](const LocalityEntry& entry) {
      return std::tuple(NameOrder(entry.name), nameRanks_[entry.state], nameRanks_[entry.postcode]);
    };
    const std::vector<std::uint32_t> places =
        SortEntries(table_.localities, [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
    for (StreetEntry& street : table_.streets) street.locality = places[street.locality];
    const auto count = static_cast<std::uint32_t>(table_.localities.size());
    ordered_.localityNames =
        MakeDictionary(keyRanks_, count, [this](std::uint32_t i) { return keyOf_[table_.localities[i].name]; });
    ordered_.localityKeys = TextIndexes(ordered_.localityNames, count);
    ordered_.postcodes =
        MakeDictionary(nameRanks_, count, [this](std::uint32_t i) { return table_.localities[i].postcode; });
  }

  void OrderStreets()
  {
    const auto rank = [this](const StreetEntry& entry) {
      return std::tuple(entry.locality, !entry.isPostal, NameOrder(entry.name), nameRanks_[entry.type],
                        nameRanks_[entry.suffix]);
    };
    const std::vector<std::uint32_t> places =
        SortEntries(table_.streets, [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
    for (AddressRow& row : table_.rows) row.street = places[row.street];
    const auto count = static_cast<std::uint32_t>(table_.streets.size());
    ordered_.streetNames =
        MakeDictionary(keyRanks_, count, [this](std::uint32_t i) { return KeyOfStreet(table_.streets[i]); });
    ordered_.streetKeys = TextIndexes(ordered_.streetNames, count);
    ordered_.firstStreets =
        FirstOf(table_.streets, table_.localities.size(), [](const StreetEntry& street) { return street.locality; });
  }

  std::uint32_t KeyOfStreet(const StreetEntry& street) const
  {
    return street.name == 0 ? kNoIndex : keyOf_[street.name];
  }

  void OrderRows()
  {
    ordered_.partOrder.resize(table_.parts.Count());
    std::iota(ordered_.partOrder.begin(), ordered_.partOrder.end(), 0U);
    std::sort(ordered_.partOrder.begin(), ordered_.partOrder.end(), [this](std::uint32_t a, std::uint32_t b) {
      return NaturallyBefore(table_.parts.At(a), table_.parts.At(b));
    });
    const std::vector<std::uint32_t> places = Inverse(ordered_.partOrder);
    for (AddressDetails& details : table_.details) {
      for (std::uint32_t* part : PartsOf(details)) *part = places[*part];
    }
    const std::vector<std::uint32_t> detailPlaces = SortEntries(table_.details, std::less<>());
    for (AddressRow& row : table_.rows) row.details = detailPlaces[row.details];
    const auto rank = [](const AddressRow& row) {
      return std::tie(row.street, row.numberFirst, row.details, row.dpid);
    };
    std::sort(table_.rows.begin(), table_.rows.end(),
              [&](const AddressRow& a, const AddressRow& b) { return rank(a) < rank(b); });
    ordered_.firstRows = FirstOf(table_.rows, table_.streets.size(), [](const AddressRow& row) { return row.street; });
  }

  AddressTable& table_;
  OrderedAddresses ordered_;
  std::vector<std::uint32_t> keyOf_;  ///< of a name: its key's number
  std::vector<std::uint32_t> nameRanks_, keyRanks_;
};

}  // namespace

bool NaturallyBefore(std::string_view a, std::string_view b)
{
  const int order = CompareNaturally(a, b);
  return order != 0 ? order < 0 : a < b;
}

OrderedAddresses Order(AddressTable& table)
{
  return Orderer(table).Run();
}

}  // namespace arf
