#include "arf/build/identifier_minter.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "arf/build/build_error.h"
#include "arf/format/database.h"

namespace arf {
namespace {

constexpr std::uint32_t kMostMinted = 60000000;  // leaves every sequence free numbers soon
constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15;

std::uint64_t Mixed(std::uint64_t hash)
{
  hash = (hash ^ (hash >> 30)) * 0xBF58476D1CE4E5B9;
  hash = (hash ^ (hash >> 27)) * 0x94D049BB133111EB;
  return hash ^ (hash >> 31);
}

std::uint64_t HashOf(std::string_view text)
{
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char c : text) hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001B3;
  return Mixed(hash);
}

std::uint32_t Candidate(std::uint64_t hash, std::uint32_t place)
{
  return kFirstMinted + static_cast<std::uint32_t>(Mixed(hash + kGolden * place) % kMintedRange);
}

/** Something with a source identifier: a row of the input, or an address of the previous database. */
struct Named
{
  Named(std::uint64_t hash, std::uint32_t i) : high(static_cast<std::uint32_t>(hash >> 32)), index(i) {}

  std::uint32_t high;  ///< half of the identifier's hash: few others have it too
  std::uint32_t index;
};

/** The database before this one. */
class Previous
{
 public:
  explicit Previous(const std::string& directory)
  {
    OpenResult result;
    database_ = Database::Open(directory, OpenMode::Disk, result);
    if (result.failure == OpenFailure::WrongVersion) {
      throw BuildError(result.message + "; build it again from its source with this program first");
    }
    if (!database_) throw BuildError(result.message);
    const std::optional<std::uint32_t> column = database_->FindAttribute(kSourceIdentifier);
    if (database_->Info(kIdentifiersKey) != kMintedIdentifiers || !column) {
      throw BuildError(directory + ": its identifiers were not made from those of a source, so none can be kept");
    }
    column_ = *column;
    named_.reserve(database_->PointCount());
    for (std::uint32_t i = 0; i < database_->PointCount(); ++i) named_.emplace_back(HashOf(Identifier(i)), i);
    std::sort(named_.begin(), named_.end(), [](const Named& a, const Named& b) { return a.high < b.high; });
  }

  const std::vector<Named>& Addresses() const { return named_; }
  std::uint32_t DpidOf(std::uint32_t ordinal) const { return database_->DpidOf(ordinal); }
  std::string_view Identifier(std::uint32_t ordinal) { return database_->AttributeOf(ordinal, column_, text_); }

 private:
  std::unique_ptr<Database> database_;
  std::uint32_t column_ = 0;
  AttributeText text_;
  std::vector<Named> named_;
};

class Minter
{
 public:
  Minter(AddressTable& table, const AttributeValues& identifiers, ReportWriter& report)
      : table_(table), identifiers_(identifiers), report_(report)
  {
  }

  MintedIdentifiers Run(const std::string& previousDirectory)
  {
    Collect();
    DropRepeated();
    if (named_.size() > kMostMinted) throw BuildError("there are too many addresses without an identifier");
    if (!previousDirectory.empty()) TakeOver(previousDirectory);
    for (const Named& row : named_) Mint(row);
    minted_.any = !named_.empty();
    return minted_;
  }

 private:
  void Collect()
  {
    named_.reserve(table_.rows.size());
    for (const AddressRow& row : table_.rows) {
      if (row.dpid == 0) {
        named_.emplace_back(RowHash(row.input), row.input);
      } else {
        inUse_.Add(row.dpid);
      }
    }
    std::sort(named_.begin(), named_.end(), [this](const Named& a, const Named& b) {
      if (a.high != b.high) return a.high < b.high;
      return std::pair(RowHash(a.index), a.index) < std::pair(RowHash(b.index), b.index);
    });
  }

  /** Leaves out rows whose source identifier is that of an earlier one. */
  void DropRepeated()
  {
    std::vector<bool> keep(table_.rows.size(), true);
    bool isAnyDropped = false;
    for (std::size_t i = 1; i < named_.size(); ++i) {
      const Named& first = named_[i - 1];
      if (!IsSame(first.index, named_[i].index)) continue;
      const std::uint32_t line = table_.rows[named_[i].index].line, otherLine = table_.rows[first.index].line;
      report_.AddSkipped("input", {line, "source_identifier: is that of line " + std::to_string(otherLine),
                                   "source_identifier: is already that of another line"});
      keep[named_[i].index] = false;
      isAnyDropped = true;
    }
    if (!isAnyDropped) return;
    table_.Keep(keep);
    named_.clear();
    inUse_ = {};
    Collect();
  }

  std::uint64_t RowHash(std::uint32_t row) { return HashOf(identifiers_.TextOf(row, text_)); }

  bool IsSame(std::uint32_t a, std::uint32_t b) { return identifiers_.CodeOf(a) == identifiers_.CodeOf(b); }

  /** Gives the rows that the previous database has the identifiers they have there. Both lists ascend by hash. */
  void TakeOver(const std::string& directory)
  {
    Previous previous(directory);
    auto row = named_.begin();
    for (const Named& address : previous.Addresses()) {
      const std::uint32_t dpid = previous.DpidOf(address.index);
      inUse_.Add(dpid);
      row = std::find_if(row, named_.end(), [&](const Named& n) { return n.high >= address.high; });
      bool isKept = false;
      for (auto same = row; same != named_.end() && same->high == address.high && !isKept; ++same) {
        isKept = identifiers_.TextOf(same->index, text_) == previous.Identifier(address.index);
        if (isKept) table_.rows[same->index].dpid = dpid;
      }
      ++(isKept ? minted_.kept : minted_.retired);
    }
  }

  void Mint(const Named& named)
  {
    AddressRow& row = table_.rows[named.index];
    if (row.dpid != 0) return;
    ++minted_.added;
    const std::uint64_t hash = RowHash(named.index);
    std::uint32_t place = 0;
    while (!inUse_.Add(row.dpid = Candidate(hash, place))) ++place;
  }

  AddressTable& table_;
  const AttributeValues& identifiers_;
  ReportWriter& report_;
  std::vector<Named> named_;
  DpidSet inUse_;
  MintedIdentifiers minted_;
  std::string text_;
};

bool HasDpid(const AddressRow& row)
{
  return row.dpid != 0;
}

}  // namespace

std::uint32_t MintedCandidate(std::string_view sourceIdentifier, std::uint32_t place)
{
  return Candidate(HashOf(sourceIdentifier), place);
}

MintedIdentifiers MintIdentifiers(AddressTable& table, const std::string& previousDirectory, ReportWriter& report,
                                  const BuildWatch& watch)
{
  if (std::all_of(table.rows.begin(), table.rows.end(), HasDpid)) {
    if (!previousDirectory.empty()) throw BuildError("the addresses have identifiers, so there are none to keep");
    return {};
  }
  watch.Reached(BuildPhase::Sorting, 0, table.rows.size());
  const auto column = std::find_if(table.attributes.begin(), table.attributes.end(),
                                   [](const AttributeTable& a) { return a.name == kSourceIdentifier; });
  if (column == table.attributes.end()) throw BuildError("addresses have neither an identifier nor that of a source");
  return Minter(table, column->values, report).Run(previousDirectory);
}

}  // namespace arf
