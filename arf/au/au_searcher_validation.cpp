// Addresses judged and laid out.
#include "arf/au/address_record.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"
#include "arf/match/address_text.h"
#include "arf/match/last_line.h"
#include "arf/match/locality_query.h"
#include "arf/match/street_query.h"
#include "arf/print/address_layout.h"
#include "arf/print/address_lines.h"

namespace arf {
namespace {

/** What an incomplete address stands for, in nine characters. */
constexpr std::string_view kStreet = "STREET";
constexpr std::string_view kLocality = "LOCALITY";
constexpr std::string_view kSeveral = "SEVERAL";

constexpr std::string_view kMostLines = "The text has more than 32 lines, or one of more than 512 bytes.";
static_assert(AddressLines::kMaxLines == 32 && AddressLines::kMaxLength == 512);

/** How far a search that found no single address got. */
char VerdictLetter(Verdict verdict)
{
  switch (verdict) {
    case Verdict::Several:
      return PAF_AU_VERDICT_AMBIGUOUS;
    case Verdict::WrongNumber:
      return PAF_AU_VERDICT_STREET_ONLY;
    case Verdict::WrongStreet:
      return PAF_AU_VERDICT_LOCALITY_ONLY;
    default:
      return PAF_AU_VERDICT_NONE;
  }
}

/** What an address that stops at some level stands for; empty when the search does not say. */
std::string_view LevelOf(Fault fault)
{
  switch (fault) {
    case Fault::StreetMissing:
      return kLocality;
    case Fault::NumberMissing:
      return kStreet;
    case Fault::SeveralAddresses:
    case Fault::SeveralLocalities:
      return kSeveral;
    default:
      return {};
  }
}

/** Whether the search got so little out of a text that it may be a last line, or a street alone. */
bool MayStopEarly(Fault fault)
{
  return fault <= Fault::StreetTypeDiffers;
}

int FindStatusOf(std::string_view level)
{
  if (level == kSeveral) return PAF_AU_FIND_SEVERAL;
  return level == kStreet ? PAF_AU_FIND_NO_NUMBER : PAF_AU_FIND_NO_STREET;
}

bool IsComplete(const Reading& reading)
{
  return !reading.place.state.empty() && !reading.place.postcode.Empty();
}

}  // namespace

int AuSearcher::ValidatePartialAddress(const char* input, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) { return ValidatePartial(TextOf(input), text); });
}

int AuSearcher::ValidatePartial(std::string_view input, BoundedText& out)
{
  const int status = Lookup(input, Rules::Lenient, out);
  if (status == 0 || !searches_) return status;
  const Fault fault = searches_->matcher.LastFailure().fault;
  std::string_view level = LevelOf(fault);
  if (level.empty() && MayStopEarly(fault)) level = LevelOfRest();
  if (level.empty()) return status;
  findStatus_ = FindStatusOf(level);
  out << level;
  return 0;
}

/** What the last input stands for where no address can be read from it: a last line, or a street without locality. */
std::string_view AuSearcher::LevelOfRest()
{
  const InputText& input = searches_->matcher.Input();
  std::vector<std::uint32_t>& localities = searches_->places.localities;
  const Engine& engine = *searches_->data->engine;
  if (FindLocalities(engine, input, localities).fault == Fault::None) {
    const bool isNamed = Tails(input).begin()->localityEnd > 0;
    return isNamed || localities.size() == 1 ? kLocality : kSeveral;
  }
  return NamesStreet(engine, input) ? kStreet : std::string_view();
}

int AuSearcher::ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag)
{
  char verdict = PAF_AU_VERDICT_NONE;
  const Rules rules = (flags & PAF_AU_VALIDATE_STRICT) != 0 ? Rules::Strict : Rules::Lenient;
  const int status =
      Answer(out, outSize, [&](BoundedText& text) { return ValidateFull(TextOf(input), rules, text, verdict); });
  if (resultFlag) *resultFlag = verdict;
  return status;
}

int AuSearcher::ValidateFull(std::string_view input, Rules rules, BoundedText& out, char& verdict)
{
  if (!IsOpen()) return NotOpen();
  const LookupAnswer answer = Search(input, rules);
  verdict = VerdictLetter(answer.verdict);
  if (answer.verdict != Verdict::Found) return FailSearch(answer.verdict, searches_->matcher.LastFailure());
  const bool asWritten = findStatus_ == PAF_AU_FIND_MATCHED && IsComplete(searches_->matcher.LastReading());
  verdict = asWritten ? PAF_AU_VERDICT_AS_WRITTEN : PAF_AU_VERDICT_CORRECTED;
  AppendAddress(out, searches_->Data(), answer.ordinal);
  return 0;
}

int AuSearcher::FormatAddress(const char* input, char* out, long formatOption, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    return Format(TextOf(input), LayoutOptions::Of(formatOption), text);
  });
}

/** Formatting corrects nothing: only an address that the strict rules find is written as the data has it. */
int AuSearcher::Format(std::string_view input, const LayoutOptions& options, BoundedText& out)
{
  const LookupAnswer answer = Search(input, Rules::Strict);
  if (answer.verdict == Verdict::TooLong) return FailSearch(answer.verdict, searches_->matcher.LastFailure());
  const bool fits = answer.verdict == Verdict::Found
                        ? LayOutAddress(searches_->Data(), answer.ordinal, options, settings_.delimiter, out)
                        : LayOutText(input, options, settings_.delimiter, out);
  if (fits) return 0;
  const bool isLimited = options.maxLines > 0 || options.maxWidth > 0;
  return lastFailure_.Record(PAF_AU_ERR_LAYOUT, isLimited ? std::string_view() : kMostLines);
}

}  // namespace arf
