#include "blackbox/support/exported_functions.h"

#include "qxpaf/paf.h"

namespace blackbox {
namespace {

using Function = ExportedFunction;

constexpr FakeOperation kNoOperation = kFakeOperationCount;
constexpr Refusals kFindStatusRefusals = {-1, -1, -1};
constexpr Refusals kNeverRefuses = {0, 0, 0};
constexpr Refusals kOpeningRefusals = {6413, 6412, 6411};

/** A function that works in place and cuts. */
Function InPlace(Function function, int most)
{
  function.output = Output::kCut;
  function.inPlace = true;
  function.most = most;
  return function;
}

/** The same as a function with an Id, on the default instance, with a length for a size. */
Function WithLength(Function function)
{
  function.refusals = kOpeningRefusals;
  function.extra = 1;
  return function;
}

Function OnDefault(Function function, int impliedSize = 0)
{
  function.refusals = kOpeningRefusals;
  function.impliedSize = impliedSize;
  return function;
}

Function CheckingSize(Function function)
{
  function.checksSize = true;
  return function;
}

Function FindStatus(Function function)
{
  function.refusals = kFindStatusRefusals;
  function.failure = Failure::kReturned;
  return function;
}

/** A function that does no work and always answers the same. */
Function Workless(const char* name, int (*run)(int, const char*, char*, int), int answer)
{
  return {name, On::kNothing, kNoOperation, Output::kNone, run, {answer, answer, answer}, Failure::kReturned};
}

void AppendQueries(std::vector<Function>& all)
{
  const auto add = [&all](const Function& function) { all.push_back(function); };
  add(InPlace({"pafLookupAddress", On::kId, kFakeLookupAddress, Output::kCut,
               [](int id, const char*, char* text, int size) { return pafLookupAddress(id, text, size, 1); }},
              2047));
  add(InPlace({"pafGetDpidId", On::kId, kFakeLookupAddress, Output::kCut,
               [](int id, const char*, char* text, int size) { return pafGetDpidId(id, text, size); }},
              2047));
  add(InPlace({"pafGetDpidNonAmasId", On::kId, kFakeLookupAddress, Output::kCut,
               [](int id, const char*, char* text, int size) { return pafGetDpidNonAmasId(id, text, size); }},
              2047));
  add(InPlace({"pafFixLastLineId", On::kId, kFakeFixLastLine, Output::kCut,
               [](int id, const char*, char* text, int size) { return pafFixLastLineId(id, text, size); }},
              511));
  add(InPlace({"pafValidatePartialAddressId", On::kId, kFakeValidatePartialAddress, Output::kCut,
               [](int id, const char*, char* text, int size) { return pafValidatePartialAddressId(id, text, size); }},
              9));
  add({"pafGetAddressId", On::kId, kFakeGetAddress, Output::kDirect,
       [](int id, const char* in, char* text, int size) { return pafGetAddressId(id, in, text, size); }});
  add({"pafGetNextAddressId", On::kId, kFakeGetNextAddress, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetNextAddressId(id, text, size); }});
  add({"pafGetPopupHintId", On::kId, kFakeGetPopupHint, Output::kDirect,
       [](int id, const char* in, char* text, int size) { return pafGetPopupHintId(id, in, in, 3, text, size); }});
  add({"pafGetNextPopupHintId", On::kId, kFakeGetNextPopupHint, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetNextPopupHintId(id, text, size); }});
  add({"pafDpidToAddressId", On::kId, kFakeGetAddress, Output::kRefused,
       [](int id, const char*, char* text, int size) { return pafDpidToAddressId(id, 12345, text, size); }});
  add({"pafGetAddressHintId", On::kId, kFakeGetAddressHint, Output::kDirect,
       [](int id, const char* in, char* text, int size) { return pafGetAddressHintId(id, in, in, text, size); }});
  add({"pafGetNextAddressHintId", On::kId, kFakeGetNextAddressHint, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetNextAddressHintId(id, text, size); }});
  add(FindStatus({"pafGetFindStatusId", On::kId, kFakeGetFindStatus, Output::kNone,
                  [](int id, const char*, char*, int) { return pafGetFindStatusId(id); }}));
  add({"pafGetParsedInputId", On::kId, kFakeGetParsedInput, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetParsedInputId(id, text, size); }});
  add({"pafValidateFullAddressId", On::kId, kFakeValidateFullAddress, Output::kDirect,
       [](int id, const char* in, char* text, int size) {
         char flag = 'q';
         return pafValidateFullAddressId(id, in, text, size, 1, &flag);
       }});
  add({"pafFormatAddressId", On::kId, kFakeFormatAddress, Output::kDirect,
       [](int id, const char* in, char* text, int size) { return pafFormatAddressId(id, in, text, 2L, size); }});
  add({"pafSetGeographicalCodesId", On::kId, kFakeSetGeographicalCodes, Output::kNone,
       [](int id, const char* in, char*, int) { return pafSetGeographicalCodesId(id, in); }});
}

void AppendSearches(std::vector<Function>& all)
{
  const auto add = [&all](const Function& function) { all.push_back(function); };
  add({"pafBeginPolygonSearch", On::kId, kFakeBeginPolygonSearch, Output::kNone,
       [](int id, const char* in, char*, int) { return pafBeginPolygonSearch(id, in, in); }});
  add(CheckingSize(
      {"pafGetNextAddressInPolygon", On::kId, kFakeGetNextAddressInPolygon, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetNextAddressInPolygon(id, text, size); }}));
  add(CheckingSize({"pafGetSearchStatistics", On::kId, kFakeGetSearchStatistics, Output::kDirect,
                    [](int id, const char* in, char* text, int size) {
                      return pafGetSearchStatistics(id, in, in, in, in, text, size);
                    }}));
  add({"pafBeginGifConcordance", On::kId, kFakeBeginGifConcordance, Output::kNone,
       [](int id, const char*, char*, int) { return pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6); }});
  add(CheckingSize({"pafGetNextGifConcordance", On::kId, kFakeGetNextGifConcordance, Output::kDirect,
                    [](int id, const char*, char* text, int size) {
                      char second[64];
                      return pafGetNextGifConcordance(id, text, size, second, sizeof second, nullptr);
                    }}));
  add({"pafBeginAddressSearch", On::kId, kFakeBeginAddressSearch, Output::kNone,
       [](int id, const char* in, char*, int) { return pafBeginAddressSearch(id, in); }});
  add(CheckingSize(
      {"pafGetNextAddressSearch", On::kId, kFakeGetNextAddressSearch, Output::kDirect,
       [](int id, const char*, char* text, int size) { return pafGetNextAddressSearch(id, text, size); }}));
}

void AppendProperties(std::vector<Function>& all)
{
  Function get =
      CheckingSize({"pafGetPropertiesId", On::kId, kFakeGetProperties, Output::kDirect,
                    [](int id, const char* in, char* text, int size) { return pafGetPropertiesId(id, in, text, size); },
                    kNeverRefuses});
  all.push_back(get);
  get.name = "pafGetProperties";
  get.on = On::kDefault;
  get.creates = false;
  get.run = [](int, const char* in, char* text, int size) { return pafGetProperties(in, text, size); };
  all.push_back(get);
  all.push_back({"pafSetPropertiesId", On::kId, kFakeSetProperties, Output::kNone,
                 [](int id, const char* in, char*, int) { return pafSetPropertiesId(id, in, in); }});
  all.push_back(OnDefault({"pafSetProperties", On::kDefault, kFakeSetProperties, Output::kNone,
                           [](int, const char* in, char*, int) { return pafSetProperties(in, in); }}));
}

void AppendDefaultQueries(std::vector<Function>& all)
{
  const auto add = [&all](const Function& function) { all.push_back(function); };
  add(WithLength(InPlace({"pafGetDpid", On::kDefault, kFakeLookupAddress, Output::kCut,
                          [](int, const char*, char* text, int size) { return pafGetDpid(text, size); }},
                         2047)));
  add(WithLength(InPlace({"pafGetDpidNonAmas", On::kDefault, kFakeLookupAddress, Output::kCut,
                          [](int, const char*, char* text, int size) { return pafGetDpidNonAmas(text, size); }},
                         2047)));
  add(WithLength(InPlace({"pafFixLastLine", On::kDefault, kFakeFixLastLine, Output::kCut,
                          [](int, const char*, char* text, int size) { return pafFixLastLine(text, size); }},
                         511)));
  add(OnDefault({"pafGetAddress", On::kDefault, kFakeGetAddress, Output::kDirect,
                 [](int, const char* in, char* text, int) { return pafGetAddress(in, text); }},
                255));
  add(OnDefault({"pafGetNextAddress", On::kDefault, kFakeGetNextAddress, Output::kDirect,
                 [](int, const char*, char* text, int) { return pafGetNextAddress(text); }},
                255));
  add(OnDefault({"pafGetPopupHint", On::kDefault, kFakeGetPopupHint, Output::kDirect,
                 [](int, const char* in, char* text, int size) { return pafGetPopupHint(in, in, 3, text, size); }}));
  add(OnDefault({"pafGetNextPopupHint", On::kDefault, kFakeGetNextPopupHint, Output::kDirect,
                 [](int, const char*, char* text, int size) { return pafGetNextPopupHint(text, size); }}));
  add(OnDefault({"pafDpidToAddress", On::kDefault, kFakeGetAddress, Output::kRefused,
                 [](int, const char*, char* text, int size) { return pafDpidToAddress(12345, text, size); }}));
  add(OnDefault({"pafGetAddressHint", On::kDefault, kFakeGetAddressHint, Output::kDirect,
                 [](int, const char* in, char* text, int) { return pafGetAddressHint(in, in, text); }},
                255));
  add(OnDefault({"pafGetNextAddressHint", On::kDefault, kFakeGetNextAddressHint, Output::kDirect,
                 [](int, const char*, char* text, int) { return pafGetNextAddressHint(text); }},
                255));
  add(FindStatus({"pafGet_FindStatus", On::kDefault, kFakeGetFindStatus, Output::kNone,
                  [](int, const char*, char*, int) { return pafGet_FindStatus(); }}));
  add(OnDefault({"pafGet_ParsedInput", On::kDefault, kFakeGetParsedInput, Output::kDirect,
                 [](int, const char*, char* text, int) { return pafGet_ParsedInput(text); }},
                255));
  add(OnDefault({"pafValidateFullAddress", On::kDefault, kFakeValidateFullAddress, Output::kDirect,
                 [](int, const char* in, char* text, int size) {
                   char flag = 'q';
                   return pafValidateFullAddress(in, text, size, 1, &flag);
                 }}));
}

/** The functions that do without a default instance that is not there. */
void AppendFormatting(std::vector<Function>& all)
{
  Function format = {"pafFormatAddress", On::kDefault, kFakeFormatAddress, Output::kDirect,
                     [](int, const char* in, char* text, int) { return pafFormatAddress(in, text, 2L); }};
  format.impliedSize = 250;
  format.creates = false;
  all.push_back(format);
  Function inPlace = InPlace({"pafFormatAddressS", On::kDefault, kFakeFormatAddress, Output::kCut,
                              [](int, const char*, char* text, int size) { return pafFormatAddressS(text, size); },
                              kNeverRefuses, Failure::kHidden},
                             255);
  inPlace.extra = 1;
  inPlace.creates = false;
  all.push_back(inPlace);
}

/** A function that works in place on size + 1 bytes, by rules of its own. */
Function Code(Function function)
{
  function.output = Output::kOwn;
  function.refusals = kNeverRefuses;
  function.inPlace = true;
  function.extra = 1;
  return function;
}

void AppendCodes(std::vector<Function>& all)
{
  const auto add = [&all](Function function, Failure failure) {
    function.failure = failure;
    all.push_back(Code(function));
  };
  add({"pafPostcodeToBsp", On::kDefault, kFakeGetProperties, Output::kOwn,
       [](int, const char*, char* text, int size) { return pafPostcodeToBsp(text, size); }},
      Failure::kHidden);
  add({"pafPostcodeToNpsp", On::kDefault, kFakeGetProperties, Output::kOwn,
       [](int, const char*, char* text, int size) { return pafPostcodeToNpsp(text, size); }},
      Failure::kHidden);
  add({"pafDpidToBarcode", On::kNothing, kFakeGetOtherProperties, Output::kOwn,
       [](int, const char*, char* text, int size) { return pafDpidToBarcode(text, size); }},
      Failure::kReturned);
  add({"pafCustInfoBarcode", On::kNothing, kFakeGetOtherProperties, Output::kOwn,
       [](int, const char*, char* text, int size) { return pafCustInfoBarcode(text, size); }},
      Failure::kReturned);
  add({"pafGenerateBarcode", On::kNothing, kFakeGetOtherProperties, Output::kOwn,
       [](int, const char*, char* text, int size) { return pafGenerateBarcode(text, size); }},
      Failure::kHidden);
  all.push_back({"pafBuildBarcode_", On::kNothing, kFakeGetOtherProperties, Output::kOwn,
                 [](int, const char* in, char*, int) {
                   char out[68];
                   int length;
                   return pafBuildBarcode_(in, in, in, 1, out, &length);
                 },
                 kNeverRefuses, Failure::kReturned});
}

void AppendWorkless(std::vector<Function>& all)
{
  const auto add = [&all](const char* name, int (*run)(int, const char*, char*, int), int answer) {
    all.push_back(Workless(name, run, answer));
  };
  add(
      "pafGetBorderPostcodesId",
      [](int id, const char*, char* text, int size) { return pafGetBorderPostcodesId(id, 2000, text, size); }, 6408);
  add(
      "pafReadLocalityRecordId",
      [](int id, const char*, char* text, int) { return pafReadLocalityRecordId(id, 1, text, nullptr, nullptr); },
      6408);
  add(
      "pafReadGroupRecordId",
      [](int id, const char*, char* text, int) { return pafReadGroupRecordId(id, 1, text, nullptr, nullptr); }, 6408);
  add(
      "pafReadPointRecordId",
      [](int id, const char*, char* text, int size) { return pafReadPointRecordId(id, 1, text, size); }, 6408);
  add(
      "pafReadSynonymRecordId",
      [](int id, const char*, char* text, int) { return pafReadSynonymRecordId(id, 1, text, nullptr); }, 6408);
  add(
      "pafReadBorderRecordId",
      [](int id, const char*, char*, int) { return pafReadBorderRecordId(id, 1, nullptr, nullptr); }, 6408);
  add(
      "pafGetCornerGeocodesId",
      [](int id, const char*, char* text, int) { return pafGetCornerGeocodesId(id, text, text, text, text); }, 6408);
  add(
      "pafGetLocalityRecordCountId", [](int id, const char*, char*, int) { return pafGetLocalityRecordCountId(id); },
      0);
  add(
      "pafGetGroupRecordCountId", [](int id, const char*, char*, int) { return pafGetGroupRecordCountId(id); }, 0);
  add(
      "pafGetPointRecordCountId", [](int id, const char*, char*, int) { return pafGetPointRecordCountId(id); }, 0);
  add(
      "pafGetSynonymRecordCountId", [](int id, const char*, char*, int) { return pafGetSynonymRecordCountId(id); }, 0);
  add(
      "pafGetBorderPostcodes",
      [](int, const char*, char* text, int size) { return pafGetBorderPostcodes(2000, text, size); }, 6408);
  add(
      "pafReadLocalityRecord",
      [](int, const char*, char* text, int) { return pafReadLocalityRecord(1, text, nullptr, nullptr); }, 6408);
  add(
      "pafReadGroupRecord",
      [](int, const char*, char* text, int) { return pafReadGroupRecord(1, text, nullptr, nullptr); }, 6408);
  add(
      "pafReadPointRecord", [](int, const char*, char* text, int size) { return pafReadPointRecord(1, text, size); },
      6408);
  add(
      "pafReadSynonymRecord", [](int, const char*, char* text, int) { return pafReadSynonymRecord(1, text, nullptr); },
      6408);
  add(
      "pafReadBorderRecord", [](int, const char*, char*, int) { return pafReadBorderRecord(1, nullptr, nullptr); },
      6408);
  add(
      "pafGetLocalityRecordCount", [](int, const char*, char*, int) { return pafGetLocalityRecordCount(); }, 0);
  add(
      "pafGetGroupRecordCount", [](int, const char*, char*, int) { return pafGetGroupRecordCount(); }, 0);
  add(
      "pafGetPointRecordCount", [](int, const char*, char*, int) { return pafGetPointRecordCount(); }, 0);
  add(
      "pafGetSynonymRecordCount", [](int, const char*, char*, int) { return pafGetSynonymRecordCount(); }, 0);
}

/** Functions that change what is open, and those that only describe: nothing is common to them. */
void AppendOthers(std::vector<Function>& all)
{
  all.push_back({"pafClosePafId", On::kId, kNoOperation, Output::kNone,
                 [](int id, const char*, char*, int) { return pafClosePafId(id); }});
  for (const char* name : {"pafGetErrorDescription", "pafOpenArfId", "pafOpenArfId2", "pafOpenPafMemId", "pafOpenPafId",
                           "pafOpenPafId2", "pafForceCloseAll", "pafUnloadPlugins", "pafUpdateArfs", "pafOpenPafMem",
                           "pafOpenPaf", "pafClosePaf", "pafCallPafFromBrimo"})
    all.push_back({name, On::kNothing, kNoOperation, Output::kOwn, nullptr});
}

}  // namespace

const std::vector<ExportedFunction>& ExportedFunctions()
{
  static const std::vector<Function> kFunctions = [] {
    std::vector<Function> all;
    AppendQueries(all);
    AppendSearches(all);
    AppendProperties(all);
    AppendDefaultQueries(all);
    AppendFormatting(all);
    AppendCodes(all);
    AppendWorkless(all);
    AppendOthers(all);
    return all;
  }();
  return kFunctions;
}

}  // namespace blackbox
