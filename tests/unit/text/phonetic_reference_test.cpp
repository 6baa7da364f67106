// Every phonetic key against the reference: all short names over the letters of the rules, random names of the same
// letters, and realistic ones. QXPAF_TEST_SEED repeats a run.
#include "reference/phonetic_reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "qxpaf/text/phonetic.h"
#include "support/guarded_buffer.h"
#include "support/random_seed.h"
#include "unit/text/matching_text.h"

namespace {

using matching_test::AllStrings;
using matching_test::ExactText;
using matching_test::RandomMatching;
using test_support::GuardedBuffer;

constexpr int kNames = 150000;

struct KeyPair
{
  const char* title;
  void (*library)(char*, const char*, unsigned long);
  void (*reference)(char*, const char*, unsigned long);
  bool setsAll;  // every byte of the output is specified
};

constexpr KeyPair kPairs[] = {{"Soundex", Soundex, reference::Soundex, false},
                              {"Nysiis", Nysiis, reference::Nysiis, true},
                              {"Metaphone", Metaphone, reference::Metaphone, false}};

void ExpectSame(const KeyPair& pair, const std::string& name, unsigned int len)
{
  const ExactText<char> exact(name);
  GuardedBuffer actual(std::size_t{len} + 1);
  GuardedBuffer expected(std::size_t{len} + 1);
  pair.library(actual.Data(), exact.Get(), len);
  pair.reference(expected.Data(), exact.Get(), len);
  ASSERT_TRUE(actual.Intact()) << pair.title << " of " << name;
  ASSERT_STREQ(actual.Data(), expected.Data()) << pair.title << " of " << name << " in " << len;
  if (pair.setsAll) {
    ASSERT_EQ(actual.Bytes(), expected.Bytes()) << pair.title << " of " << name << " in " << len;
  }
}

void ExpectSame(const std::string& name, unsigned int len)
{
  for (const KeyPair& pair : kPairs) ASSERT_NO_FATAL_FAILURE(ExpectSame(pair, name, len));
  const ExactText<char> exact(name);
  ASSERT_EQ(Soundex2(exact.Get()), reference::Soundex2(exact.Get())) << name;
}

void ExpectSameForAll(std::string_view alphabet, std::size_t longest)
{
  for (const std::string& name : AllStrings(alphabet, longest))
    for (const unsigned int len : {1U, 3U, 10U}) ASSERT_NO_FATAL_FAILURE(ExpectSame(name, len));
}

unsigned int Length(RandomMatching& random, unsigned int limit)
{
  return static_cast<unsigned int>(random.Below(limit));
}

TEST(PhoneticReference, AllShortNames)
{
  ExpectSameForAll("ABCDEFGHIJKLMNOPQRSTUVWXYZ", 3);
  ExpectSameForAll("AEGHNTW", 5);
  ExpectSameForAll("SCHIAZY", 5);
  ExpectSameForAll("DGEMBPF", 5);
  ExpectSameForAll("aXk-5 ", 5);
  ExpectSameForAll("\xE9Wry", 5);
}

TEST(PhoneticReference, RandomNames)
{
  RandomMatching random(test_support::RandomSeed());
  constexpr std::string_view kAlphabets[] = {"AEIOUYWH",
                                             "CSPTGHIEYAO",
                                             "DGEIYABN",
                                             "KNPWRXAEG",
                                             "ABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                             "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz -'.",
                                             "MACPFSZTRNDEIYX",
                                             "abcdefghijklmnopqrstuvwxyz",
                                             "Rr\t \n4bB\x80\xA0\xC9\xE9\xFF-"};
  for (int i = 0; i < kNames; ++i) {
    const std::string name =
        random.Of(kAlphabets[random.Below(std::size(kAlphabets))], random.Below(20) == 0 ? 80 : 12);
    ASSERT_NO_FATAL_FAILURE(ExpectSame(name, Length(random, 10)));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(name, 60));
  }
}

TEST(PhoneticReference, RealisticNames)
{
  RandomMatching random(test_support::RandomSeed());
  for (int i = 0; i < kNames; ++i) ASSERT_NO_FATAL_FAILURE(ExpectSame(random.Realistic(), 1 + Length(random, 20)));
}

TEST(PhoneticReference, AnyBytes)
{
  RandomMatching random(test_support::RandomSeed());
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  for (int i = 0; i < kNames; ++i) ASSERT_NO_FATAL_FAILURE(ExpectSame(random.Of(bytes, 60), Length(random, 70)));
}

}  // namespace
