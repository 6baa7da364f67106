#include "request_table.h"

#include <strings.h>

#include <algorithm>
#include <limits>

#include "qxpaf/paf.h"
#include "trust.h"

namespace pafd {
namespace {

/** pafFormatAddressS is told the length that a buffer of 256 bytes holds. */
constexpr int kFormattedLength = 255;

/** Functions that are told one byte less than they may write. */
constexpr int kSizeLessOne = kTextSize - 1;

/** (Id, text, size): the text goes in, out or both ways. */
template <int (*function)(int, char*, int)>
void OnInstance(const Arguments& arguments, Answer& answer)
{
  answer.status = function(arguments.id, answer.Text(), kTextSize);
}

/** (Id, question, text, size) */
template <int (*function)(int, const char*, char*, int)>
void Ask(const Arguments& arguments, Answer& answer)
{
  answer.status = function(arguments.id, arguments.texts[0].c_str(), answer.Text(), kTextSize);
}

/** (Id, text) */
template <int (*function)(int, const char*)>
void Tell(const Arguments& arguments, Answer& answer)
{
  answer.status = function(arguments.id, arguments.texts[0].c_str());
}

/** (text, size), in place, without an Id */
template <int (*function)(char*, int), int size>
void InPlaceOf(const Arguments&, Answer& answer)
{
  answer.status = function(answer.Text(), size);
}

template <int (*function)(int)>
void OfInstance(const Arguments& arguments, Answer& answer)
{
  answer.status = function(arguments.id);
}

template <int (*function)()>
void Count(const Arguments&, Answer& answer)
{
  answer.status = function();
}

template <int (*function)(long, char*, long*, long*)>
void ReadRecord(const Arguments& arguments, Answer& answer)
{
  answer.status = function(arguments.numbers[0], answer.Text(), &answer.numbers[0], &answer.numbers[1]);
}

template <class Integer>
Integer Narrowed(long number)
{
  return static_cast<Integer>(
      std::clamp<long>(number, std::numeric_limits<Integer>::min(), std::numeric_limits<Integer>::max()));
}

void OpenDefault(const Arguments&, Answer& answer)
{
  answer.status = pafOpenPafId(&answer.id);
}

void OpenDefaultInMode(const Arguments& arguments, Answer& answer)
{
  answer.status = pafOpenPafMemId(&answer.id, Narrowed<int>(arguments.numbers[0]));
}

void OpenNamed(const Arguments& arguments, Answer& answer)
{
  answer.status = pafOpenArfId(&answer.id, Narrowed<int>(arguments.numbers[0]), arguments.texts[0].c_str());
}

void BorderPostcodes(const Arguments& arguments, Answer& answer)
{
  answer.status =
      pafGetBorderPostcodesId(arguments.id, Narrowed<short>(arguments.numbers[0]), answer.Text(), kTextSize);
}

void PopupHint(const Arguments& arguments, Answer& answer)
{
  answer.status = pafGetPopupHintId(arguments.id, arguments.texts[0].c_str(), arguments.texts[1].c_str(),
                                    Narrowed<int>(arguments.numbers[0]), answer.Text(), kTextSize);
}

void AddressOfDpid(const Arguments& arguments, Answer& answer)
{
  answer.status = pafDpidToAddressId(arguments.id, arguments.numbers[0], answer.Text(), kTextSize);
}

void AddressHint(const Arguments& arguments, Answer& answer)
{
  answer.status = pafGetAddressHintId(arguments.id, arguments.texts[0].c_str(), arguments.texts[1].c_str(),
                                      answer.Text(), kTextSize);
}

/** On the way a TAB looks as a line feed does. No delimiter is a line feed, so this one was a TAB. */
const char* ValueToSet(const std::string& name, const std::string& value)
{
  return value == "\n" && ::strcasecmp(name.c_str(), "Delimiter") == 0 ? "\t" : value.c_str();
}

void SetProperty(const Arguments& arguments, Answer& answer)
{
  const std::string& name = arguments.texts[0];
  answer.status = pafSetPropertiesId(arguments.id, name.c_str(), ValueToSet(name, arguments.texts[1]));
}

/** A failed validation's verdict travels as the message. */
void ValidateFullAddress(const Arguments& arguments, Answer& answer)
{
  char verdict = '\0';
  answer.status = pafValidateFullAddressId(arguments.id, arguments.texts[0].c_str(), answer.Text(), kTextSize,
                                           Narrowed<int>(arguments.numbers[0]), &verdict);
  if (verdict != '\0') {
    answer.message = verdict;
  }
}

void FormatOnInstance(const Arguments& arguments, Answer& answer)
{
  answer.status =
      pafFormatAddressId(arguments.id, arguments.texts[0].c_str(), answer.Text(), arguments.numbers[0], kTextSize);
}

void Format(const Arguments& arguments, Answer& answer)
{
  answer.status = pafFormatAddress(arguments.texts[0].c_str(), answer.Text(), arguments.numbers[0]);
}

void PointRecord(const Arguments& arguments, Answer& answer)
{
  answer.status = pafReadPointRecord(arguments.numbers[0], answer.Text(), kTextSize);
}

void SynonymRecord(const Arguments& arguments, Answer& answer)
{
  answer.status = pafReadSynonymRecord(arguments.numbers[0], answer.Text(), &answer.numbers[0]);
}

void BorderRecord(const Arguments& arguments, Answer& answer)
{
  int count = static_cast<int>(answer.values.size());
  answer.status = pafReadBorderRecord(Narrowed<int>(arguments.numbers[0]), answer.values.data(), &count);
  answer.valueCount = count;
}

/** The polygon's second text arrives as the two numbers that it holds, without what stood between them. */
void BeginPolygon(const Arguments& arguments, Answer& answer)
{
  const std::string& first = arguments.texts[0];
  const std::string& second = arguments.texts[1];
  const std::string numbers = first.empty() && second.empty() ? "" : first + "," + second;
  answer.status = pafBeginPolygonSearch(arguments.id, arguments.texts[2].c_str(), numbers.c_str());
}

void SearchStatistics(const Arguments& arguments, Answer& answer)
{
  answer.status =
      pafGetSearchStatistics(arguments.id, arguments.texts[0].c_str(), arguments.texts[1].c_str(),
                             arguments.texts[2].c_str(), arguments.texts[3].c_str(), answer.Text(), kTextSize);
}

void BuildBarcode(const Arguments& arguments, Answer& answer)
{
  answer.status = pafBuildBarcode_(arguments.texts[0].c_str(), arguments.texts[1].c_str(), arguments.texts[2].c_str(),
                                   Narrowed<int>(arguments.numbers[0]), answer.Text(), nullptr);
}

void ErrorDescription(const Arguments& arguments, Answer& answer)
{
  answer.status = pafGetErrorDescription(answer.Text(), Narrowed<int>(arguments.numbers[0]), kTextSize);
}

using enum Field;

constexpr Request kRequests[] = {
    {"pafBeginPolygonSearch", {Id, Text, Text, Lines}, Shape::Number, BeginPolygon},
    {"pafBuildBarcode_", {Text, Text, Lines, Number}, Shape::Text, BuildBarcode},
    {"pafClosePafId", {Id}, Shape::Number, OfInstance<pafClosePafId>, Effect::Closes},
    {"pafCustInfoBarcode", {Lines}, Shape::InPlace, InPlaceOf<pafCustInfoBarcode, kSizeLessOne>},
    {"pafDpidToAddressId", {Id, Number}, Shape::Text, AddressOfDpid},
    {"pafDpidToBarcode", {Lines}, Shape::InPlace, InPlaceOf<pafDpidToBarcode, kSizeLessOne>},
    {"pafFixLastLineId", {Id, Lines}, Shape::InPlace, OnInstance<pafFixLastLineId>},
    {"pafFormatAddress", {Number, Lines}, Shape::Text, Format, Effect::UsesDefault},
    {"pafFormatAddressId", {Id, Number, Lines}, Shape::Text, FormatOnInstance},
    {"pafFormatAddressS", {Lines}, Shape::InPlace, InPlaceOf<pafFormatAddressS, kFormattedLength>, Effect::UsesDefault},
    {"pafGenerateBarcode", {Lines}, Shape::InPlace, InPlaceOf<pafGenerateBarcode, kSizeLessOne>},
    {"pafGetAddressHintId", {Id, Text, Lines}, Shape::Text, AddressHint},
    {"pafGetAddressId", {Id, Record}, Shape::Text, Ask<pafGetAddressId>},
    {"pafGetBorderPostcodesId", {Id, Number}, Shape::Text, BorderPostcodes},
    {"pafGetDpidId", {Id, Lines}, Shape::InPlace, OnInstance<pafGetDpidId>},
    {"pafGetDpidNonAmasId", {Id, Lines}, Shape::InPlace, OnInstance<pafGetDpidNonAmasId>},
    {"pafGetErrorDescription", {Number}, Shape::Text, ErrorDescription},
    {"pafGetFindStatusId", {Id}, Shape::Value, OfInstance<pafGetFindStatusId>},
    {"pafGetGroupRecordCount", {}, Shape::Value, Count<pafGetGroupRecordCount>},
    {"pafGetLocalityRecordCount", {}, Shape::Value, Count<pafGetLocalityRecordCount>},
    {"pafGetNextAddressHintId", {Id}, Shape::Text, OnInstance<pafGetNextAddressHintId>},
    {"pafGetNextAddressId", {Id}, Shape::Text, OnInstance<pafGetNextAddressId>},
    {"pafGetNextAddressInPolygon", {Id}, Shape::Text, OnInstance<pafGetNextAddressInPolygon>},
    {"pafGetNextPopupHintId", {Id}, Shape::Text, OnInstance<pafGetNextPopupHintId>},
    {"pafGetParsedInputId", {Id}, Shape::Text, OnInstance<pafGetParsedInputId>},
    {"pafGetPointRecordCount", {}, Shape::Value, Count<pafGetPointRecordCount>},
    {"pafGetPopupHintId", {Id, Text, Lines, Number}, Shape::Text, PopupHint},
    {"pafGetPropertiesId", {Id, Lines}, Shape::Text, Ask<pafGetPropertiesId>, Effect::Nothing, RefuseToGet},
    {"pafGetSearchStatistics", {Id, Text, Text, Text, Lines}, Shape::Text, SearchStatistics},
    {"pafGetSynonymRecordCount", {}, Shape::Value, Count<pafGetSynonymRecordCount>},
    {"pafOpenArfId", {Number, Lines}, Shape::Open, OpenNamed, Effect::Nothing, RefuseToOpen},
    {"pafOpenPafId", {}, Shape::Open, OpenDefault},
    {"pafOpenPafMemId", {Number}, Shape::Open, OpenDefaultInMode},
    {"pafPostcodeToBsp", {Lines}, Shape::InPlace, InPlaceOf<pafPostcodeToBsp, kSizeLessOne>},
    {"pafPostcodeToNpsp", {Lines}, Shape::InPlace, InPlaceOf<pafPostcodeToNpsp, kSizeLessOne>},
    {"pafReadBorderRecord", {Number}, Shape::List, BorderRecord},
    {"pafReadGroupRecord", {Number}, Shape::Record2, ReadRecord<pafReadGroupRecord>},
    {"pafReadLocalityRecord", {Number}, Shape::Record2, ReadRecord<pafReadLocalityRecord>},
    {"pafReadPointRecord", {Number}, Shape::Text, PointRecord},
    {"pafReadSynonymRecord", {Number}, Shape::Record1, SynonymRecord},
    {"pafSetGeographicalCodesId", {Id, Lines}, Shape::Number, Tell<pafSetGeographicalCodesId>},
    {"pafSetPropertiesId", {Id, Text, Lines}, Shape::Number, SetProperty, Effect::Nothing, RefuseToSet},
    {"pafValidateFullAddressId", {Id, Number, Lines}, Shape::Text, ValidateFullAddress},
    {"pafValidatePartialAddressId", {Id, Lines}, Shape::InPlace, OnInstance<pafValidatePartialAddressId>},
};

constexpr bool ComesBefore(const Request& one, const Request& other)
{
  return one.name < other.name;
}

static_assert(std::is_sorted(std::begin(kRequests), std::end(kRequests), ComesBefore));

}  // namespace

std::span<const Request> Requests()
{
  return kRequests;
}

const Request* FindRequest(std::string_view name)
{
  const Request* end = std::end(kRequests);
  const Request* found = std::lower_bound(
      std::begin(kRequests), end, name, [](const Request& row, std::string_view wanted) { return row.name < wanted; });
  return found != end && found->name == name ? found : nullptr;
}

}  // namespace pafd
