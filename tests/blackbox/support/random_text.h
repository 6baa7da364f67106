/** Random texts, the same for the same QXPAF_TEST_SEED. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_RANDOM_TEXT_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_RANDOM_TEXT_H

#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace blackbox {

class RandomText
{
 public:
  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  /** Bytes of any value but 0, sometimes only digits. */
  std::string Bytes(int most)
  {
    std::string text(static_cast<size_t>(Number(0, most)), '\0');
    const bool digits = Number(0, 4) == 0;
    for (char& c : text) c = static_cast<char>(digits ? Number('0', '9') : Number(1, 255));
    return text;
  }

  const std::string& One(const std::vector<std::string>& parts)
  {
    return parts[static_cast<size_t>(Number(0, static_cast<int>(parts.size()) - 1))];
  }

  /** A number of these parts, now and then with random bytes between them. */
  std::string Parts(const std::vector<std::string>& parts, int most)
  {
    std::string text;
    for (int count = Number(0, most); count > 0; --count) text += Number(0, 9) == 0 ? Bytes(10) : One(parts);
    return text;
  }

  /** The text with some of its bytes replaced, removed or doubled. */
  std::string Damaged(std::string text)
  {
    for (int count = Number(0, 4); count > 0 && !text.empty(); --count) {
      const auto at = static_cast<size_t>(Number(0, static_cast<int>(text.size()) - 1));
      text.replace(at, static_cast<size_t>(Number(0, 1)), static_cast<size_t>(Number(0, 2)),
                   static_cast<char>(Number(1, 255)));
    }
    return text;
  }

 private:
  std::mt19937 random_{test_support::RandomSeed()};
};

/** What commands of the interpreter are made of. */
inline const std::vector<std::string>& CommandParts()
{
  static const std::vector<std::string> kParts = {"OpenArf;",
                                                  "CloseArf;",
                                                  "LookupAddress;",
                                                  "DpidToAddress;",
                                                  "SetGeographicalCodes;",
                                                  "SetPointsOfInterest;",
                                                  "SetOldPostcodeGif;",
                                                  "SetGeographicalCodesFilter;",
                                                  "SetStateFilter;",
                                                  "SetAddressFilter;",
                                                  "SetGifCommonMinimumPercent;",
                                                  "LookupByAddressId;",
                                                  "LookupByGeocode;",
                                                  "FormatAddress;",
                                                  "ValidatePartialAddress;",
                                                  "FixLastLine;",
                                                  "PostcodeToBsp;",
                                                  "PostcodeToNpsp;",
                                                  "GetProperties;",
                                                  "Id=1;",
                                                  "Id=2;",
                                                  "iD=0;",
                                                  "Lenient=True;",
                                                  "Dpid=30000001;",
                                                  "LatLong=True;",
                                                  "Unique=True;",
                                                  "Range=5;",
                                                  "Options=2;",
                                                  "Database=AU./path;",
                                                  "Database=;",
                                                  "Id",
                                                  "True",
                                                  "=",
                                                  ";",
                                                  ",",
                                                  "\t",
                                                  "1",
                                                  "2000",
                                                  "-33.8675,151.2127",
                                                  "1 Macquarie St Sydney NSW 2000",
                                                  "OpenARF",
                                                  "Properties",
                                                  "ArfLibVersion",
                                                  "PropertyName3"};
  return kParts;
}

/** One of the commands' names with its ";". */
inline const std::string& RandomName(RandomText& random)
{
  constexpr int kNames = 19;
  return CommandParts()[static_cast<size_t>(random.Number(0, kNames - 1))];
}

/** A command with mostly fitting parameters and any data. */
inline std::string RandomCommand(RandomText& random)
{
  const std::string& command = RandomName(random);
  const std::string id = random.Number(0, 3) == 0 ? "" : "Id=1;";
  switch (random.Number(0, 3)) {
    case 0:
      return random.Parts(CommandParts(), 8);
    case 1:
      return command + id + random.Bytes(300);
    default:
      return command + id + random.Parts(CommandParts(), 5);
  }
}

}  // namespace blackbox

#endif
