#include "arf/build/text_input.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "arf/format/fold.h"

namespace arf {
namespace {

/** The characters of Windows-1252 in 80 … 9F; the others are those of Unicode's first 256. */
constexpr std::array<std::uint16_t, 32> kWindows1252 = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                                        0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

std::uint8_t ByteAt(std::string_view text, std::size_t at)
{
  return at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
}

bool IsAscii(std::string_view text)
{
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
}

/** The range of the second byte of a sequence that begins with `lead`: no surplus bytes, surrogates, or code points
    above U+10FFFF. */
bool SecondByteFits(std::uint8_t lead, std::uint8_t second)
{
  if (lead == 0xE0) return second >= 0xA0 && second <= 0xBF;
  if (lead == 0xED) return second >= 0x80 && second <= 0x9F;
  if (lead == 0xF0) return second >= 0x90 && second <= 0xBF;
  if (lead == 0xF4) return second >= 0x80 && second <= 0x8F;
  return second >= 0x80 && second <= 0xBF;
}

/** The length of the well-formed UTF-8 sequence at the front of `text`, or 0. */
std::size_t SequenceLength(std::string_view text)
{
  const std::uint8_t lead = ByteAt(text, 0);
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (!SecondByteFits(lead, ByteAt(text, 1))) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((ByteAt(text, i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

void AppendWindows1252(std::uint8_t byte, std::string& out)
{
  const unsigned code = byte < 0xA0 ? kWindows1252[byte - 0x80U] : byte;
  const auto append = [&out](unsigned value) { out += static_cast<char>(value); };
  if (code < 0x800) {
    append(0xC0 | (code >> 6));
  } else {
    append(0xE0 | (code >> 12));
    append(0x80 | ((code >> 6) & 0x3F));
  }
  append(0x80 | (code & 0x3F));
}

/** Whether a text is its own display form: capital letters, digits, signs, single spaces between them. */
bool IsPlainDisplay(std::string_view text)
{
  char before = ' ';
  for (const char c : text) {
    if (c < ' ' || c > '~' || (c >= 'a' && c <= 'z') || (c == ' ' && before == ' ')) return false;
    before = c;
  }
  return text.empty() || before != ' ';
}

bool IsControlOrSpace(char c)
{
  return static_cast<std::uint8_t>(c) <= ' ' || c == '\x7F';
}

}  // namespace

std::string_view ToUtf8(std::string_view text, std::string& scratch)
{
  if (IsAscii(text)) return text;
  scratch.clear();
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    if (length > 0) {
      scratch.append(text.substr(0, length));
    } else {
      AppendWindows1252(ByteAt(text, 0), scratch);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return scratch;
}

std::string_view ToDisplayForm(std::string_view text, std::string& scratch)
{
  if (IsPlainDisplay(text)) return text;
  const std::string_view utf8 = ToUtf8(text, scratch);
  if (utf8.data() == text.data()) scratch.assign(text);
  // In place: the form is never longer than its text and is written behind what was read.
  scratch.resize(DisplayForm(scratch, scratch));
  return scratch;
}

std::string_view ToPlainText(std::string_view text, std::string& scratch)
{
  while (!text.empty() && IsControlOrSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsControlOrSpace(text.back())) text.remove_suffix(1);
  const auto isControl = [](char c) { return IsControlOrSpace(c) && c != ' '; };
  const std::string_view utf8 = ToUtf8(text, scratch);
  if (std::none_of(utf8.begin(), utf8.end(), isControl)) return utf8;
  if (utf8.data() == text.data()) scratch.assign(text);
  std::replace_if(scratch.begin(), scratch.end(), isControl, ' ');
  return scratch;
}

}  // namespace arf
