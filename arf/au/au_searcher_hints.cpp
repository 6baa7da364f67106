// What to show while somebody types.
#include "arf/au/address_record.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"

namespace arf {
namespace {

constexpr std::size_t kUsualHints = 10;

char LetterOf(HintKind kind)
{
  switch (kind) {
    case HintKind::Locality:
      return 'L';
    case HintKind::Street:
      return 'S';
    case HintKind::Building:
      return 'B';
    case HintKind::Address:
      return 'A';
  }
  return ' ';
}

/** Text, kind, number of addresses, identifier, spelling. */
void AppendHint(BoundedText& out, const Database& data, const Hint& hint, char delimiter)
{
  out.StartPart();
  AppendHintText(out, data, hint);
  out.CleanPart(delimiter);
  out << delimiter << LetterOf(hint.kind) << delimiter << hint.count << delimiter;
  if (hint.own != kNoIndex) {
    const std::uint32_t principal = data.PrincipalOf(hint.own);
    AppendDpid(out, data.DpidOf(principal == kNoIndex ? hint.own : principal));
  }
  out << delimiter << static_cast<std::uint32_t>(hint.spelling);
}

void AppendNoHint(BoundedText& out, char delimiter)
{
  for (int i = 0; i < 4; ++i) out << delimiter;
}

HintEnumeration& Made(std::unique_ptr<HintEnumeration>& hints, const Database& data)
{
  if (!hints) hints = std::make_unique<HintEnumeration>(data);
  return *hints;
}

}  // namespace

int AuSearcher::GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    HintEnumeration& hints = Made(searches_->hints.hints, searches_->Data());
    const std::size_t most = number > 0 ? static_cast<std::size_t>(number) : kUsualHints;
    return FinishHintStart(hints.StartHints(TextOf(text1), TextOf(text2), most), hints, text);
  });
}

int AuSearcher::GetNextPopupHint(char* out, int outSize)
{
  return NextHint(&HintEnumerations::hints, out, outSize);
}

int AuSearcher::GetAddressHint(const char* text1, const char* text2, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    HintEnumeration& hints = Made(searches_->hints.addresses, searches_->Data());
    return FinishHintStart(hints.StartAddresses(TextOf(text1), TextOf(text2)), hints, text);
  });
}

int AuSearcher::GetNextAddressHint(char* out, int outSize)
{
  return NextHint(&HintEnumerations::addresses, out, outSize);
}

int AuSearcher::FinishHintStart(InputFault fault, HintEnumeration& hints, BoundedText& out)
{
  if (fault != InputFault::None) return lastFailure_.Record(PAF_AU_ERR_INPUT_TOO_LONG, std::string_view());
  return WriteHint(hints, out);
}

int AuSearcher::NextHint(std::unique_ptr<HintEnumeration> HintEnumerations::*which, char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    const std::unique_ptr<HintEnumeration>& hints = searches_->hints.*which;
    if (!hints || !hints->IsStarted()) return lastFailure_.Record(PAF_AU_ERR_NO_ENUMERATION, std::string_view());
    return WriteHint(*hints, text);
  });
}

/** A hint that does not fit stays the current one, so that the caller can ask again with a larger buffer. */
int AuSearcher::WriteHint(HintEnumeration& hints, BoundedText& out)
{
  const Hint* hint = hints.Current();
  if (!hint) {
    AppendNoHint(out, settings_.delimiter);
    return 0;
  }
  AppendHint(out, searches_->Data(), *hint, settings_.delimiter);
  if (out.IsWhole()) hints.Advance();
  return 0;
}

}  // namespace arf
