// Guesses at texts in which nothing was found.
#include "arf/match/misread.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using arf::Departure;

struct Rewriter
{
  arf::InputText words;
  arf::RepairedText out;
};

std::unique_ptr<Rewriter> Read(const std::string& text)
{
  auto rewriter = std::make_unique<Rewriter>();
  EXPECT_EQ(rewriter->words.Read(text), arf::InputFault::None) << text;
  return rewriter;
}

struct RightRow
{
  const char* written;
  const char* meant;  ///< empty: nothing looks misread
  arf::Departures departures;
};

TEST(Misread, PutRight)
{
  const Departure alike = Departure::LookAlike, state = Departure::StateTypo, noise = Departure::Noise;
  const RightRow rows[] = {
      // The state
      {"9 Elm St Dubbo NWS 2830", "9 ELM ST DUBBO NSW 2830", state},
      {"9 Elm St Dubbo NWS", "9 ELM ST DUBBO NSW", state},
      {"9 Elm St Dubbo 2830 NWS", "9 ELM ST DUBBO 2830 NSW", state},
      {"9 Elm St Dubbo NSWW 2830 Australia", "9 ELM ST DUBBO NSW 2830", state},
      {"9 Elm St Dubbo NS", "", {}},  // or NT
      {"9 Elm St Dubbo NS 2830", "9 ELM ST DUBBO 2830", state},
      {"9 Elm St, Lyons CT 2606 Australia", "9 ELM ST, LYONS 2606", state},
      {"9 Elm St Burra Souht Australia", "9 ELM ST BURRA SA", state},
      {"9 Elm St Burra South Austrlia 5417 Australia", "9 ELM ST BURRA SA 5417", state},
      {"9 Elm St Lyons Austrlian Capital Territory 2606", "9 ELM ST LYONS ACT 2606", state},
      {"9 Elm St Lyons Australian Capital Territory 2606", "", {}},
      {"9 Elm St Seymour Victria", "9 ELM ST SEYMOUR VIC", state},
      {"9 Elm St Cairns Qeensland 4870", "9 ELM ST CAIRNS QLD 4870", state},
      {"9 Elm St Dubbo New South Wals", "9 ELM ST DUBBO NSW", state},
      {"9 Elm St Perth WAS", "", {}},
      {"9 Elm St Alice NTW", "", {}},
      {"9 Elm St Perth W 6000", "", {}},
      {"9 Elm St Lyons Ct", "", {}},
      {"9 Elm St Dubbo NSW 2830", "", {}},
      {"NWS 2830", "", {}},
      // Signs that look alike
      {"9 Elm St Dubbo N5W 2830", "9 ELM ST DUBBO NSW 2830", alike},
      {"9 Elm St Seymour V1C 3660", "9 ELM ST SEYMOUR VIC 3660", alike},
      {"9 Elm St Dubbo NSW 283O", "9 ELM ST DUBBO NSW 2830", alike},
      {"9 Elm St Dubbo 283O NSW", "9 ELM ST DUBBO 2830 NSW", alike},
      {"9 Elm St Dubbo N5W ZB30", "9 ELM ST DUBBO NSW 2830", alike},
      {"9 Elm St Dubbo NWS 283O", "9 ELM ST DUBBO NSW 2830", arf::Departures(alike) + state},
      {"9 Elm St Dubbo NSW 2B3X", "", {}},
      {"9 Elm St Dubbo NSW ZBSO", "9 ELM ST DUBBO NSW", noise},
      {"9 Sm1th St Dubbo", "9 SMITH ST DUBBO", alike},
      {"9 5mith R0ad, Dubb0", "9 SMITH ROAD, DUBBO", alike},
      {"3/9 A5pen Place", "3/9 ASPEN PLACE", alike},
      {"3-9 Br1an St & Elm", "3-9 BRIAN ST & ELM", alike},
      {"9 M1ll St & We5t Rd", "9 MILL ST & WEST RD", alike},
      {"9 Elm St Shop5A Dubbo", "", {}},
      {"9 1st St", "", {}},
      {"9 21st St", "", {}},
      {"9 Sm7th St", "", {}},
      {"9 Elm St Unit1 Dubbo", "", {}},
      {"9 Elm St G12 Dubbo", "", {}},
      {"Sm1th St Dubbo", "", {}},
      {"T0wer1 9 Elm St Dubbo", "", {}},
      {"9 F00 12 Elm St Dubbo", "", {}},
      {"9 Foob1 12 R0se St Dubbo", "9 FOOB1 12 ROSE ST DUBBO", alike},
      // Words behind the state
      {"9 Elm St Dubbo NSW xyz", "9 ELM ST DUBBO NSW", noise},
      {"9 Elm St Dubbo New South Wales please ring", "9 ELM ST DUBBO NEW SOUTH WALES", noise},
      {"9 Elm St Dubbo NSW please do ring", "", {}},
      {"9 Elm St Dubbo NSW Unit 3", "", {}},
      {"9 Elm St Dubbo NSW Australia", "", {}},
      {"NSW xyz", "", {}},
      {"", "", {}},
      {"NSW", "", {}},
  };
  for (const RightRow& row : rows) {
    const auto rewriter = Read(row.written);
    arf::Departures departures;
    EXPECT_EQ(arf::PutRight(rewriter->words, 'I', rewriter->out, departures), row.meant) << row.written;
    EXPECT_EQ(departures.Sum(), row.departures.Sum()) << row.written;
  }
}

TEST(Misread, OneMayBeEitherLetter)
{
  const auto rewriter = Read("9 H1ll St Dubbo Q1D 4000");
  arf::Departures departures;
  EXPECT_EQ(arf::PutRight(rewriter->words, 'L', rewriter->out, departures), "9 HLLL ST DUBBO QLD 4000");
  EXPECT_EQ(arf::PutRight(rewriter->words, 'I', rewriter->out, departures), "9 HILL ST DUBBO QLD 4000");
}

TEST(Misread, PutLocalityLast)
{
  const struct
  {
    const char* written;
    const char* meant;
  } rows[] = {
      {"Dubbo, 9 Elm St", "9 ELM ST, DUBBO"},
      {"Dubbo NSW 2830, 9 Elm St", "9 ELM ST, DUBBO NSW 2830"},
      {"2830 Dubbo, Unit 3, 9 Elm St, NSW", "UNIT 3, 9 ELM ST, NSW, 2830 DUBBO"},
      {"Dubbo 9 Elm St", ""},
      {"Dubbo, Elm St", ""},
      {"2830, 9 Elm St", ""},
      {"2830 Dubbo 2831, 9 Elm St", ""},
      {"9 Elm St, Dubbo 2830", ""},
      {"Elm St 12, Dubbo 2830", ""},
      {"", ""},
  };
  for (const auto& row : rows) {
    const auto rewriter = Read(row.written);
    EXPECT_EQ(arf::PutLocalityLast(rewriter->words, rewriter->out), row.meant) << row.written;
  }
}

TEST(Misread, LeaveBracketsOut)
{
  const struct
  {
    const char* written;
    const char* rest;
    const char* inner;
  } rows[] = {
      {"9 Elm St (Rose Rise), Dubbo", "9 Elm St ,, Dubbo", "Rose Rise"},
      {"9 Elm St (Rose) (Hill) Dubbo", "9 Elm St , (Hill) Dubbo", "Rose"},
      {"9 Elm St () Dubbo", "9 Elm St , Dubbo", ""},
      {"9 Elm St (Lot 3) Dubbo", "", ""},
      {"Foo (Bar) 9 Elm St Dubbo", "", ""},
      {"9 Elm St (Rose Dubbo", "", ""},
      {"9 Elm St Rose) Dubbo", "", ""},
      {")9(", "", ""},
      {"", "", ""},
  };
  for (const auto& row : rows) {
    arf::RepairedText out;
    std::string_view inner;
    const std::string_view rest = arf::LeaveBracketsOut(row.written, out, inner);
    EXPECT_EQ(rest, row.rest) << row.written;
    EXPECT_EQ(rest.empty() ? std::string_view() : inner, row.inner) << row.written;
  }
}

TEST(Misread, LongTextsFit)
{
  std::string many;
  for (int i = 0; i < 48; ++i) many += "12 Sm1th&";
  const auto rewriter = Read(many);
  arf::Departures departures;
  EXPECT_LE(arf::PutRight(rewriter->words, 'I', rewriter->out, departures).size(), arf::kMaxInputBytes);
  const std::string filled = "9 " + std::string(arf::kMaxInputBytes - 4, 'x') + "()";
  std::string_view inner;
  EXPECT_LE(arf::LeaveBracketsOut(filled, rewriter->out, inner).size(), arf::kMaxInputBytes);
}

}  // namespace
