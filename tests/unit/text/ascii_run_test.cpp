// The stretches of ASCII, with and without vector instructions: each kind against plain loops, at every alignment and
// length, with the first other element at every place.
#include "text/ascii_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "unit/text/encoding_text.h"

namespace {

using encoding_test::ExactText;
using encoding_test::Hex;

constexpr std::size_t kLongest = 70;

template <class Runs>
class AsciiRunKinds : public testing::Test
{
};

using Kinds = testing::Types<qxpaf::PortableAsciiRuns, qxpaf::AsciiRuns, qxpaf::AsciiRunsOf<>>;
TYPED_TEST_SUITE(AsciiRunKinds, Kinds);

template <class Element>
std::basic_string<Element> Letters(std::size_t length)
{
  std::basic_string<Element> out(length, Element());
  for (std::size_t i = 0; i < length; ++i) out[i] = static_cast<Element>((i * 37 + 1) % 0x80);
  return out;
}

// Text of `length` whose element at `other` is not ASCII; none such when other is the length.
template <class Element>
std::basic_string<Element> TextWith(std::size_t length, std::size_t other, Element value)
{
  std::basic_string<Element> out = Letters<Element>(length);
  if (other < length) out[other] = value;
  return out;
}

// Converts exactly n elements that end where their memory ends, into memory that is as large as the expected run.
template <class Runs, class Out, class In>
void ExpectRun(const std::basic_string<In>& text, std::size_t run, std::size_t offset)
{
  const std::vector<In> source = [&] {
    std::vector<In> elements(offset + text.size());
    std::copy(text.begin(), text.end(), elements.begin() + static_cast<std::ptrdiff_t>(offset));
    return elements;
  }();
  const In* const from = source.data() + offset;
  ASSERT_EQ(Runs::Length(from, text.size()), run) << Hex(text);
  std::vector<Out> out(run);
  ASSERT_EQ(Runs::Convert(out.data(), from, text.size()), run) << Hex(text);
  ASSERT_TRUE(std::equal(out.begin(), out.end(), text.begin())) << Hex(text);
}

template <class Runs, class Out, class In>
void ExpectRunsEverywhere(In firstOther, In lastOther)
{
  for (std::size_t length = 0; length <= kLongest; ++length)
    for (std::size_t other = 0; other <= length; ++other)
      for (const In value : {firstOther, lastOther}) {
        ExpectRun<Runs, Out, In>(TextWith<In>(length, other, value), other, length % 17);
        if (testing::Test::HasFatalFailure()) return;
      }
}

TYPED_TEST(AsciiRunKinds, Widen)
{
  ExpectRunsEverywhere<TypeParam, wchar_t, char>('\x80', '\xFF');
}

TYPED_TEST(AsciiRunKinds, Copy)
{
  ExpectRunsEverywhere<TypeParam, char, char>('\x80', '\xC3');
}

TYPED_TEST(AsciiRunKinds, Narrow)
{
  ExpectRunsEverywhere<TypeParam, char, wchar_t>(0x80, -1);
  ExpectRunsEverywhere<TypeParam, char, wchar_t>(0x10000, -2147483647 - 1);
}

TYPED_TEST(AsciiRunKinds, AllAlignments)
{
  for (std::size_t offset = 0; offset <= 64; ++offset)
    for (const std::size_t length : {15U, 16U, 31U, 45U, 64U}) {
      ExpectRun<TypeParam, wchar_t, char>(Letters<char>(length), length, offset);
      ExpectRun<TypeParam, char, char>(Letters<char>(length), length, offset);
      ExpectRun<TypeParam, char, wchar_t>(Letters<wchar_t>(length), length, offset);
    }
}

template <class Runs>
void ExpectNarrowedInPlace(std::wstring text)
{
  const std::string expected(text.begin(), text.end());
  char* const bytes = reinterpret_cast<char*>(text.data());
  ASSERT_EQ(Runs::Convert(bytes, text.data(), text.size()), text.size());
  ASSERT_EQ(Hex(std::string(bytes, expected.size())), Hex(expected));
}

TYPED_TEST(AsciiRunKinds, NarrowInPlace)
{
  for (std::size_t length = 0; length <= kLongest; ++length) {
    ExpectNarrowedInPlace<TypeParam>(Letters<wchar_t>(length));
    // Four bytes of what is written look like an ASCII element here, should they ever be read as one.
    std::wstring sparse(length, L'\0');
    for (std::size_t i = 0; i < length; i += 4) sparse[i] = static_cast<wchar_t>('0' + i);
    ExpectNarrowedInPlace<TypeParam>(sparse);
  }
}

TYPED_TEST(AsciiRunKinds, CountCharacters)
{
  for (std::size_t length = 0; length <= kLongest; ++length)
    for (std::size_t step = 1; step <= 5; ++step) {
      // Every byte value at one place or another.
      std::string text(length, '\0');
      for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<char>(i * step * 29 + length);
      const auto expected = std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; });
      const std::vector<char> exact(text.begin(), text.end());
      ASSERT_EQ(TypeParam::CountCharacters(exact.data(), length), static_cast<std::size_t>(expected)) << Hex(text);
    }
}

}  // namespace
