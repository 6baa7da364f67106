// Every function that a client library forwards, with every kind of input and size: what the server's answer must be,
// told from what the same call answers where the databases are.
#include <gtest/gtest.h>

#include <climits>

#include "blackbox/twin/function_table.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

const std::vector<Input> kPlainInputs = {{"address", "6 Macquarie St, Sydney NSW 2000"},
                                         {"lower", "6 macquarie st sydney"},
                                         {"range", "6 Phillip Street, Sydney"},
                                         {"units", "12 Watson Tce Mt Gambier"},
                                         {"unit", "2/12 Watson Tce Mt Gambier"},
                                         {"number", "900 George St Sydney"},
                                         {"street", "1 Nonesuch St Sydney"},
                                         {"locality", "1 High St Atlantis NSW"},
                                         {"nothing", "xyzzy"},
                                         {"empty", ""},
                                         {"blank", "   "},
                                         {"last line", "2000 sydney"},
                                         {"misspelt", "Balarat Central vic"},
                                         {"utf-8", "6 Mac\xC3\xA9uarie St, Sydney"},
                                         {"latin-1", "6 Macquari\xE9 St, Sydney"},
                                         {"bytes", "\x01\x7f\xff\xfe%s%n"},
                                         {"property", "PafLibVersion"},
                                         {"list", "Properties"},
                                         {"no property", "Weather"},
                                         {"sort plan", "BSP:2000"},
                                         {"no sort plan", "BSP:9999"},
                                         {"barcode", "Barcode:30000001"},
                                         {"no barcode", "Barcode2:30000001"},
                                         {"postcode", "2000"},
                                         {"dpid", "30000001"},
                                         {"customer", "3000000152ABC"},
                                         {"geocode", "-33.8675,151.2127"},
                                         {"status", "status:12"},
                                         {"library's status", "status:6405"},
                                         {"negative", "-1"},
                                         {"fill 100", "fill:100"},
                                         {"fill 1021", "fill:1021"},
                                         {"fill 1022", "fill:1022"},
                                         {"fill 3000", "fill:3000"}};

/** For functions with one text, which is their request's last. */
const std::vector<Input> kLinedInputs = {{"lines", "General Post Office\n1 Martin Place\nSYDNEY  NSW  2000"},
                                         {"tabs", "General Post Office\t1 Martin Place\tSYDNEY  NSW  2000"},
                                         {"last tab", "6 Macquarie St, Sydney\t"},
                                         {"first tab", "\t6 Macquarie St, Sydney"},
                                         {"only tabs", "\t\t\t"},
                                         {"lines in answer", "lines"}};

/** Sizes of one function: all of them for the first inputs, then one at a time beside the whole answer of the
 * reference. */
std::vector<int> Sizes(const ExportedFunction& function, std::size_t input)
{
  static const std::vector<int> kSizes = {kWhole, 200, 24, 9, 2, 1, 0, -1, INT_MIN};
  if (function.impliedSize != 0 || function.output == Output::kNone) return {kWhole};
  if (function.output == Output::kOwn) return {70, 37, 36, 8};
  if (input < 2) return kSizes;
  return {kSizes[input % kSizes.size()]};
}

void AddEverything(FunctionTable& table, const std::vector<const ExportedFunction*>& functions)
{
  for (const ExportedFunction* function : functions) {
    std::size_t number = 0;
    for (const Input& input : kPlainInputs) {
      for (const int size : Sizes(*function, number)) table.Add(*function, input, size);
      ++number;
    }
    if (TakesSeveralTexts(*function)) continue;
    for (const Input& input : kLinedInputs) table.Add(*function, input, kWhole);
  }
}

TEST(EveryFunction, AnswersAsWithoutAServer)
{
  Twin twin;
  FunctionTable table(twin, PlugIn::kRefuses);
  AddEverything(table, Callable([](const ExportedFunction&) { return true; }));
  twin.Check();
  std::printf("%zu calls, %zu of them alike by any rule\n", twin.Calls(), twin.Alike());
  EXPECT_GT(twin.Calls(), 2000u);
}

/** A plug-in that answers with what reaches it: nothing may be lost or added on the way. */
TEST(EchoOfEveryFunction, AnswersAsWithoutAServer)
{
  Twin twin;
  FunctionTable table(twin, PlugIn::kCuts);
  // The echo of formatting and of sort plans tells which instance answers, and those are others on the server.
  AddEverything(table, Callable([](const ExportedFunction& function) {
                  return !IsLocalOnly(function) && function.operation != kFakeFormatAddress &&
                         function.operation != kFakeGetProperties && function.operation != kFakeGetOtherProperties &&
                         std::string(function.name) != "pafGetAddressId" &&
                         std::string(function.name) != "pafGetAddress";
                }));
  twin.Check();
  EXPECT_GT(twin.Calls(), 1000u);
}

TEST(EveryFunction, RefusesIdsThatAreNotOpen)
{
  Twin twin;
  const std::vector<const ExportedFunction*> functions = Callable(
      [](const ExportedFunction& function) { return function.on == On::kId && function.output != Output::kOwn; });
  for (const ExportedFunction* function : functions) {
    for (const int id : {0, -1, 1, 2, 99, INT_MAX, INT_MIN}) {
      for (const char* in : {"6 Macquarie St, Sydney", "CountryCode", "PafLibVersion"}) {
        twin.Same(CaseName(std::string(function->name) + " of " + std::to_string(id), in, 64),
                  [=] { return WithoutWords(*function, CallOn(*function, id, in, 64)); });
      }
    }
  }
  for (const int id : {0, -1, 1, 99, INT_MAX, INT_MIN}) {
    twin.Same("pafClosePafId of " + std::to_string(id), [=] { return Say(pafClosePafId(id)); });
    twin.Same("pafBeginPolygonSearch of " + std::to_string(id),
              [=] { return Say(pafBeginPolygonSearch(id, "", nullptr)); });
  }
  twin.Check();
  EXPECT_GT(twin.Calls(), 300u);
}

}  // namespace
}  // namespace blackbox
