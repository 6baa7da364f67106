#include "arf/au/au_searcher.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "arf/au/address_record.h"
#include "arf/au/boundary.h"
#include "arf/format/ascii.h"
#include "arf/match/address_text.h"
#include "arf/match/locality_query.h"

namespace arf {
namespace {

struct VerdictRow
{
  Verdict verdict;
  int status;
  int findStatus;
};

constexpr VerdictRow kVerdicts[] = {
    {Verdict::Nothing, PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_NOTHING},
    {Verdict::TooLong, PAF_AU_ERR_INPUT_TOO_LONG, PAF_AU_FIND_NOT_SEARCHED},
    {Verdict::WrongLocality, PAF_AU_ERR_WRONG_LOCALITY, PAF_AU_FIND_NO_LOCALITY},
    {Verdict::WrongStreet, PAF_AU_ERR_WRONG_STREET, PAF_AU_FIND_NO_STREET},
    {Verdict::WrongNumber, PAF_AU_ERR_WRONG_NUMBER, PAF_AU_FIND_NO_NUMBER},
    {Verdict::Several, PAF_AU_ERR_SEVERAL_FOUND, PAF_AU_FIND_SEVERAL},
};

const VerdictRow* RowOf(Verdict verdict)
{
  const auto row = std::find_if(std::begin(kVerdicts), std::end(kVerdicts),
                                [verdict](const VerdictRow& r) { return r.verdict == verdict; });
  return row == std::end(kVerdicts) ? nullptr : row;
}

int FindStatusOf(const LookupAnswer& answer)
{
  if (const VerdictRow* row = RowOf(answer.verdict)) return row->findStatus;
  if (answer.primaryPoint) return PAF_AU_FIND_PRIMARY_POINT;
  return answer.changed ? PAF_AU_FIND_CHANGED : PAF_AU_FIND_MATCHED;
}

std::uint32_t DigitsToDpid(std::string_view digits)
{
  std::uint32_t dpid = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), dpid);
  return result.ec == std::errc() ? dpid : 0;
}

/** The fields of a query record that are used, numbered from 1; the others must be empty. */
struct QueryRecord
{
  std::string_view locality;
  std::string_view state;
  std::string_view postcode;
  std::string_view dpid;
  std::string_view latitude, longitude;
  bool hasOthers = false;
};

QueryRecord ReadQueryRecord(std::string_view record, char delimiter)
{
  QueryRecord query;
  for (unsigned field = 1;; ++field) {
    const std::size_t end = std::min(record.find(delimiter), record.size());
    const std::string_view value = Trimmed(record.substr(0, end));
    switch (field) {
      case PAF_AU_FIELD_LOCALITY:
        query.locality = value;
        break;
      case PAF_AU_FIELD_STATE:
        query.state = value;
        break;
      case PAF_AU_FIELD_POSTCODE:
        query.postcode = value;
        break;
      case PAF_AU_FIELD_DPID:
        query.dpid = value;
        break;
      case PAF_AU_FIELD_LATITUDE:
        query.latitude = value;
        break;
      case PAF_AU_FIELD_LONGITUDE:
        query.longitude = value;
        break;
      case PAF_AU_FIELD_COUNTRY:
      case PAF_AU_FIELD_MATCH_QUALITY:
        break;
      default:
        query.hasOthers = query.hasOthers || !value.empty();
    }
    if (end == record.size()) return query;
    record.remove_prefix(end + 1);
  }
}

}  // namespace

AuSearcher::AuSearcher(AuDatabase& database) : database_(database), current_(database.Current())
{
  IsOpen();
}

/** Follows the database to the data that it was opened on last; without such data the searcher keeps what it has. */
bool AuSearcher::IsOpen()
{
  std::shared_ptr<const OpenData> data;
  if (current_->GetNewer(version_, data) && data) {
    const std::unique_ptr<Searches> before = std::exchange(searches_, std::make_unique<Searches>(std::move(data)));
    // What names places in the data before must not be looked up in these.
    parsed_ = Parsed::Nothing;
    lastFailure_ = LastFailure();
    departures_ = Departures();
    const FieldList fields = std::exchange(settings_.outputFields, FieldList());
    if (before) AdoptOutputFields(before->Data(), fields);
  }
  return searches_ != nullptr;
}

/** Fields that the other database had as attributes and this one has not leave the output fields as they are. */
void AuSearcher::AdoptOutputFields(const Database& from, const FieldList& fields)
{
  char names[4096];
  BoundedText text(names, sizeof names);
  fields.Write(&from, text);
  if (text.IsWhole()) settings_.outputFields.Read(searches_->Data(), text.View());
}

void AuSearcher::Release()
{
  delete this;
}

int AuSearcher::NotOpen()
{
  return lastFailure_.Record(PAF_AU_ERR_NOT_OPEN, std::string_view());
}

int AuSearcher::FailSearch(Verdict verdict, const Failure& failure)
{
  const VerdictRow* row = RowOf(verdict);
  if (!row) return PAF_AU_ERR_INTERNAL;
  findStatus_ = row->findStatus;
  return lastFailure_.Record(row->status, failure);
}

/** A text that was to be a last line; advice about streets would not help. */
int AuSearcher::FailLine(Verdict verdict, const Failure& failure)
{
  const int status = FailSearch(verdict, failure);
  if (status == PAF_AU_ERR_NOT_FOUND) {
    lastFailure_.Record(status, "No locality was recognised.");
    lastFailure_.Advise("Write locality, state and postcode.");
  } else if (status == PAF_AU_ERR_SEVERAL_FOUND) {
    lastFailure_.Advise("Add the locality, the state or the postcode.");
  }
  return status;
}

int AuSearcher::FailQuery(int code, std::string_view detail)
{
  findStatus_ = code == PAF_AU_ERR_UNKNOWN_DPID ? PAF_AU_FIND_NOTHING : PAF_AU_FIND_NOT_SEARCHED;
  return lastFailure_.Record(code, detail);
}

/** Codes taken over from other data may be of a kind that these data do not have: nothing would fit them. */
int AuSearcher::CheckFilters()
{
  const std::string_view kind = MissingCodeKind(settings_.search, searches_->Data());
  if (kind.empty()) return 0;
  FixedText<200> detail("The data has no codes of the kind \"");
  detail.Append(kind);
  detail.Append("\", which \"GeographicalCodes\" asks for.");
  return FailQuery(PAF_AU_ERR_PROPERTY_VALUE, detail.View());
}

int AuSearcher::LookupAddress(const char* address, char* out, int outSize, int amas)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    return Lookup(TextOf(address), amas == 0 ? Rules::Lenient : Rules::Strict, text);
  });
}

LookupAnswer AuSearcher::Search(std::string_view address, Rules rules)
{
  parsed_ = Parsed::Address;
  const LookupAnswer answer = searches_->matcher.Lookup(address, rules);
  departures_ = answer.departures;
  findStatus_ = FindStatusOf(answer);
  return answer;
}

int AuSearcher::Lookup(std::string_view address, Rules rules, BoundedText& out)
{
  if (!IsOpen()) return NotOpen();
  const LookupAnswer answer = Search(address, rules);
  if (answer.verdict != Verdict::Found) return FailSearch(answer.verdict, searches_->matcher.LastFailure());
  AppendDpid(out, searches_->Data().DpidOf(answer.ordinal));
  return 0;
}

int AuSearcher::FixLastLine(const char* input, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) { return Fix(TextOf(input), text); });
}

int AuSearcher::Fix(std::string_view input, BoundedText& out)
{
  if (!IsOpen()) return NotOpen();
  parsed_ = Parsed::LastLine;
  const LastLineAnswer answer = searches_->fixer.Fix(input);
  if (answer.verdict != Verdict::Found) return FailLine(answer.verdict, searches_->fixer.LastFailure());
  findStatus_ = answer.changed ? PAF_AU_FIND_CHANGED : PAF_AU_FIND_MATCHED;
  AppendLocality(out, searches_->Data().LocalityAt(answer.locality));
  return 0;
}

int AuSearcher::GetAddress(const char* query, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    searches_->addresses.Reset();
    const int status = StartAddresses(TextOf(query));
    return status == 0 ? WriteCurrent(text) : status;
  });
}

int AuSearcher::GetNextAddress(char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    if (!searches_->addresses.IsStarted()) return lastFailure_.Record(PAF_AU_ERR_NO_ENUMERATION, std::string_view());
    return WriteCurrent(text);
  });
}

/** An address that does not fit stays the current one, so that the caller can ask again with a larger buffer. */
int AuSearcher::WriteCurrent(BoundedText& out)
{
  Enumeration& addresses = searches_->addresses;
  const Point* point = addresses.Current();
  if (!point) {
    AppendEmptyRecord(out, settings_.outputFields, settings_.delimiter);
    return 0;
  }
  AppendAddressRecord(out, *searches_->data, *point, settings_.outputFields, settings_.delimiter);
  if (out.IsWhole()) addresses.Advance();
  return 0;
}

int AuSearcher::StartAddresses(std::string_view query)
{
  const bool isRecord = query.find(settings_.delimiter) != std::string_view::npos;
  return isRecord ? StartWithRecord(query) : StartWithLine(query);
}

int AuSearcher::StartWithRecord(std::string_view record)
{
  const QueryRecord query = ReadQueryRecord(record, settings_.delimiter);
  if (!query.dpid.empty()) return StartWithDpid(query.dpid);
  if (query.hasOthers) return FailQuery(PAF_ERR_NOT_IMPLEMENTED, std::string_view());
  if (!query.latitude.empty() || !query.longitude.empty()) return StartNear(query.latitude, query.longitude);
  if (query.locality.empty() && query.state.empty() && query.postcode.empty())
    return FailQuery(PAF_AU_ERR_BAD_QUERY, std::string_view());
  FixedText<kMaxInputBytes + 1> line(query.locality);
  for (const std::string_view part : {query.state, query.postcode}) {
    line.Append(" ");
    if (!line.Append(part)) break;
  }
  return StartWithLine(line.View());
}

int AuSearcher::StartWithDpid(std::string_view text)
{
  std::string_view digits = text;
  const bool isNegative = digits.front() == '-';
  if (isNegative) digits.remove_prefix(1);
  if (digits.empty() || !std::all_of(digits.begin(), digits.end(), IsDigit))
    return FailQuery(PAF_AU_ERR_BAD_QUERY, "The identifier in field 8 is no number.");
  const std::uint32_t dpid = isNegative ? 0 : DigitsToDpid(digits);
  const std::optional<std::uint32_t> ordinal = searches_->Data().FindDpid(dpid);
  if (dpid == 0 || !ordinal) {
    FixedText<64> detail("No address has the identifier ");
    detail.Append(text);
    detail.Append(".");
    return FailQuery(PAF_AU_ERR_UNKNOWN_DPID, detail.View());
  }
  findStatus_ = PAF_AU_FIND_MATCHED;
  searches_->addresses.StartWith(*ordinal);
  return 0;
}

int AuSearcher::StartWithLine(std::string_view line)
{
  if (const int status = CheckFilters(); status != 0) return status;
  if (const int status = FindLocalitiesOf(line, searches_->addresses.Localities()); status != 0) return status;
  findStatus_ = PAF_AU_FIND_MATCHED;
  searches_->addresses.StartLocalities(searches_->places.addressFilter.Configure(settings_.search));
  return 0;
}

int AuSearcher::ReadQuery(std::string_view line)
{
  if (searches_->query.Read(line) == InputFault::None) return 0;
  Failure failure;
  failure.fault = Fault::TooLong;
  return FailSearch(Verdict::TooLong, failure);
}

int AuSearcher::FindLocalitiesOf(std::string_view line, std::vector<std::uint32_t>& found)
{
  if (const int status = ReadQuery(line); status != 0) return status;
  const Failure failure = FindLocalities(*searches_->data->engine, searches_->query, found);
  return failure.fault == Fault::None ? 0 : FailLine(VerdictOf(failure.fault), failure);
}

int AuSearcher::GetParsedInput(char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    const auto status = static_cast<PafAuFindStatus>(findStatus_);
    const Searches& s = *searches_;
    if (parsed_ == Parsed::Nothing)
      AppendEmptyRecord(text, FieldList::Whole(), settings_.delimiter);
    else if (parsed_ == Parsed::Address)
      AppendParsedRecord(text, s.matcher.Input(), s.matcher.LastReading(), status, settings_.delimiter);
    else
      AppendParsedRecord(text, s.fixer.Input(), s.fixer.LastReading(), status, settings_.delimiter);
    return 0;
  });
}

int AuSearcher::GetProperties(const char* name, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) { return Read(TextOf(name), text); });
}

int AuSearcher::Read(std::string_view property, BoundedText& out)
{
  PropertySource source;
  if (IsOpen()) source = {&searches_->Data(), &searches_->data->sortPlan, &settings_, &departures_};
  char buffer[256];
  BoundedText reason(buffer, sizeof buffer);
  const int status = ReadProperty(property, source, out, reason);
  return status == 0 ? 0 : lastFailure_.Record(status, reason.View());
}

int AuSearcher::SetProperties(const char* name, const char* value, char* errText, int errSize)
{
  BoundedText error(errText, errSize);
  return Guarded([&] {
    if (!IsOpen()) return NotOpen();
    char buffer[256];
    BoundedText reason(buffer, sizeof buffer);
    const int status = WriteProperty(TextOf(name), TextOf(value), searches_->Data(), settings_, reason);
    if (status == 0) return 0;
    error << reason.View();
    return lastFailure_.Record(status, reason.View());
  });
}

void AuSearcher::TakeOverFrom(IArfSearcher* previous)
{
  const auto* other = dynamic_cast<const AuSearcher*>(previous);
  if (!other || !IsOpen() || !other->searches_) return;
  settings_.delimiter = other->settings_.delimiter;
  settings_.search = other->settings_.search;
  AdoptOutputFields(other->searches_->Data(), other->settings_.outputFields);
}

void AuSearcher::GetErrorDescription(char* out, int code, int outSize)
{
  BoundedText text(out, outSize);
  lastFailure_.Describe(code, searches_ ? &searches_->Data() : nullptr, text);
}

}  // namespace arf
