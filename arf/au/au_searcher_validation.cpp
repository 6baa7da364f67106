// Addresses judged and laid out.
#include "arf/au/address_record.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"
#include "arf/match/address_text.h"
#include "arf/print/address_layout.h"

namespace arf {
namespace {

/** What an incomplete address stands for, in nine characters. */
constexpr std::string_view kStreet = "STREET";
constexpr std::string_view kLocality = "LOCALITY";
constexpr std::string_view kSeveral = "SEVERAL";

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

/** What an address that stops at some level stands for; empty when something in it is wrong. */
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
  const std::string_view level = LevelOf(searches_->matcher.LastFailure().fault);
  if (level.empty()) return status;
  out << level;
  return 0;
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
  return fits ? 0 : lastFailure_.Record(PAF_AU_ERR_LAYOUT, std::string_view());
}

}  // namespace arf
