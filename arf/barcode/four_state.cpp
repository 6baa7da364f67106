#include "arf/barcode/four_state.h"

#include <algorithm>

#include "arf/barcode/encoding_tables.h"
#include "arf/barcode/reed_solomon.h"

namespace arf {
namespace {

constexpr FourStateFormat kFormats[] = {
    {"11", "standard customer barcode", 37, 0, 0}, {"45", "reply paid barcode", 37, 0, 0},
    {"59", "customer barcode 2", 52, 8, 5},        {"62", "customer barcode 3", 67, 15, 10},
    {"87", "routing barcode", 37, 0, 0},           {"92", "redirection barcode", 37, 0, 0},
};

constexpr unsigned kStartStop = 1 * kBarStates + kTracker;  // bars 13
constexpr std::size_t kStartStopBars = 2;
constexpr std::size_t kCheckBars = kCheckSymbols * kTextBars;
constexpr std::size_t kMaxSymbols = (kMaxFourStateBars - 2 * kStartStopBars - kCheckBars) / kTextBars;

constexpr std::size_t kSymbols = kBarStates * kBarStates * kBarStates;
using BarText = std::array<char, kTextBars>;

/** The bars of every symbol. */
constexpr std::array<BarText, kSymbols> MakeBarTexts()
{
  std::array<BarText, kSymbols> texts{};
  for (unsigned symbol = 0; symbol < kSymbols; ++symbol)
    for (std::size_t bar = kTextBars, rest = symbol; bar-- > 0; rest /= kBarStates)
      texts[symbol][bar] = static_cast<char>('0' + rest % kBarStates);
  return texts;
}

constexpr std::array<BarText, kSymbols> kBarTexts = MakeBarTexts();

constexpr bool HasWholeSymbols(const FourStateFormat& format)
{
  return (format.bars - 2 * kStartStopBars) % kTextBars == 0;
}
static_assert(std::all_of(std::begin(kFormats), std::end(kFormats), HasWholeSymbols));

bool IsDigits(std::string_view text)
{
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsWritable(const FourStateRequest& request)
{
  return IsNumeric(request) ? IsDigits(request.customer)
                            : std::all_of(request.customer.begin(), request.customer.end(), HasTextCode);
}

FourStateFault CheckCustomer(const FourStateRequest& request, const FourStateFormat& format)
{
  if (request.customer.empty()) return FourStateFault::None;
  if (format.customerDigits == 0) return FourStateFault::CustomerNotTaken;
  if (!IsWritable(request)) return FourStateFault::CustomerCharacter;
  const std::size_t room = IsNumeric(request) ? format.customerDigits : format.customerCharacters;
  return request.customer.size() > room ? FourStateFault::CustomerTooLong : FourStateFault::None;
}

FourStateFault Check(const FourStateRequest& request, const FourStateFormat* format)
{
  if (request.dpid.empty() || request.dpid.size() > kDpidDigits || !IsDigits(request.dpid)) return FourStateFault::Dpid;
  return format ? CheckCustomer(request, *format) : FourStateFault::Format;
}

void AppendDigits(std::string_view digits, FourStateBars& bars)
{
  for (const char digit : digits) bars.Append(NumericCode(static_cast<unsigned>(digit - '0')), kNumericBars);
}

void AppendCustomer(const FourStateRequest& request, FourStateBars& bars)
{
  if (IsNumeric(request)) return AppendDigits(request.customer, bars);
  for (const char c : request.customer) bars.Append(kTextCodes[static_cast<unsigned char>(c)], kTextBars);
}

void AppendCheck(FourStateBars& bars)
{
  const std::string_view data = bars.View().substr(kStartStopBars);
  std::array<std::uint8_t, kMaxSymbols> symbols{};
  for (std::size_t i = 0; i < data.size() / kTextBars; ++i) {
    unsigned symbol = 0;
    for (const char bar : data.substr(i * kTextBars, kTextBars))
      symbol = symbol * kBarStates + static_cast<unsigned>(bar - '0');
    symbols[i] = static_cast<std::uint8_t>(symbol);
  }
  for (const std::uint8_t symbol : CheckSymbols({symbols.data(), data.size() / kTextBars}))
    bars.Append(symbol, kTextBars);
}

/** The character that cannot be written, or all of the text where that is a byte that is no character by itself. */
std::string_view FaultyPart(const FourStateRequest& request)
{
  const std::string_view text = request.customer;
  const bool numeric = IsNumeric(request);
  const auto isFaulty = [numeric](char c) { return numeric ? !IsDigits({&c, 1}) : !HasTextCode(c); };
  const auto faulty = std::find_if(text.begin(), text.end(), isFaulty);
  const bool isPlain = faulty != text.end() && *faulty > ' ' && *faulty < '\x7F';
  return isPlain ? text.substr(static_cast<std::size_t>(faulty - text.begin()), 1) : text;
}

void DescribeLength(const FourStateRequest& request, const FourStateFormat& format, BoundedText& text)
{
  text << "The customer information \"" << request.customer << "\" is too long: format " << format.code
       << " carries up to " << static_cast<std::uint32_t>(format.customerCharacters) << " characters, or "
       << static_cast<std::uint32_t>(format.customerDigits) << " digits in the numeric encoding.";
}

}  // namespace

std::span<const FourStateFormat> FourStateFormats()
{
  return kFormats;
}

const FourStateFormat* FindFourStateFormat(std::string_view code)
{
  const auto format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [code](const FourStateFormat& row) { return row.code == code; });
  return format == std::end(kFormats) ? nullptr : format;
}

void FourStateBars::Append(unsigned code, std::size_t count)
{
  std::copy_n(kBarTexts[code].end() - count, count, bars_.begin() + count_);
  count_ += count;
}

void FourStateBars::FillTo(std::size_t count)
{
  if (count_ >= count) return;
  std::fill(bars_.begin() + count_, bars_.begin() + count, static_cast<char>('0' + kTracker));
  count_ = count;
}

bool IsNumeric(const FourStateRequest& request)
{
  return request.encoding == CustomerEncoding::Numeric ||
         (request.encoding == CustomerEncoding::Automatic && IsDigits(request.customer));
}

FourStateFault EncodeFourState(const FourStateRequest& request, FourStateBars& bars)
{
  bars.Clear();
  const FourStateFormat* format = FindFourStateFormat(request.format);
  if (const FourStateFault fault = Check(request, format); fault != FourStateFault::None) return fault;
  bars.Append(kStartStop, kStartStopBars);
  AppendDigits(request.format, bars);
  for (std::size_t i = request.dpid.size(); i < kDpidDigits; ++i) bars.Append(NumericCode(0), kNumericBars);
  AppendDigits(request.dpid, bars);
  AppendCustomer(request, bars);
  bars.FillTo(format->bars - kCheckBars - kStartStopBars);
  AppendCheck(bars);
  bars.Append(kStartStop, kStartStopBars);
  return FourStateFault::None;
}

void DescribeFault(FourStateFault fault, const FourStateRequest& request, BoundedText& text)
{
  switch (fault) {
    case FourStateFault::None:
      return;
    case FourStateFault::Dpid:
      text << '"' << request.dpid << "\" is no DPID: a DPID is a number of up to eight digits.";
      return;
    case FourStateFault::Format:
      text << '"' << request.format << "\" is no format control code:";
      for (const FourStateFormat& format : kFormats) text << (&format == kFormats ? " " : ", ") << format.code;
      text << " are.";
      return;
    case FourStateFault::CustomerNotTaken:
      text << "Format " << request.format << " carries no customer information; 59 and 62 do.";
      return;
    case FourStateFault::CustomerTooLong:
      if (const FourStateFormat* format = FindFourStateFormat(request.format)) DescribeLength(request, *format, text);
      return;
    case FourStateFault::CustomerCharacter:
      text << '"' << FaultyPart(request) << "\" cannot be encoded: "
           << (IsNumeric(request) ? "the numeric encoding has digits only."
                                  : "customer information consists of letters, digits, spaces and #.");
      return;
  }
}

}  // namespace arf
