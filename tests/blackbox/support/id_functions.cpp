#include "blackbox/support/id_functions.h"

#include "qxpaf/paf.h"

namespace blackbox {
namespace {

int LookupAddress(int id)
{
  char text[64] = "1 High St";
  return pafLookupAddress(id, text, sizeof text, 1);
}

int GetDpid(int id)
{
  char text[64] = "1 High St";
  return pafGetDpidId(id, text, sizeof text);
}

int GetDpidNonAmas(int id)
{
  char text[64] = "1 High St";
  return pafGetDpidNonAmasId(id, text, sizeof text);
}

int FixLastLine(int id)
{
  char text[64] = "Sydney";
  return pafFixLastLineId(id, text, sizeof text);
}

int ValidatePartialAddress(int id)
{
  char text[64] = "1 High";
  return pafValidatePartialAddressId(id, text, sizeof text);
}

int GetAddress(int id)
{
  char out[64];
  return pafGetAddressId(id, "query", out, sizeof out);
}

int GetNextAddress(int id)
{
  char out[64];
  return pafGetNextAddressId(id, out, sizeof out);
}

int GetPopupHint(int id)
{
  char out[64];
  return pafGetPopupHintId(id, "a", "b", 3, out, sizeof out);
}

int GetNextPopupHint(int id)
{
  char out[64];
  return pafGetNextPopupHintId(id, out, sizeof out);
}

int DpidToAddress(int id)
{
  char out[64];
  return pafDpidToAddressId(id, 12345, out, sizeof out);
}

int GetAddressHint(int id)
{
  char out[64];
  return pafGetAddressHintId(id, "a", "b", out, sizeof out);
}

int GetNextAddressHint(int id)
{
  char out[64];
  return pafGetNextAddressHintId(id, out, sizeof out);
}

int GetParsedInput(int id)
{
  char out[64];
  return pafGetParsedInputId(id, out, sizeof out);
}

int ValidateFullAddress(int id)
{
  char out[64];
  char flag;
  return pafValidateFullAddressId(id, "address", out, sizeof out, 1, &flag);
}

int FormatAddress(int id)
{
  char out[64];
  return pafFormatAddressId(id, "address", out, 2L, sizeof out);
}

int SetGeographicalCodes(int id)
{
  return pafSetGeographicalCodesId(id, "NSW");
}

int BeginPolygonSearch(int id)
{
  return pafBeginPolygonSearch(id, "a", "b");
}

int GetNextAddressInPolygon(int id)
{
  char out[64];
  return pafGetNextAddressInPolygon(id, out, sizeof out);
}

int GetSearchStatistics(int id)
{
  char out[64];
  return pafGetSearchStatistics(id, "a", "b", "c", "d", out, sizeof out);
}

int BeginGifConcordance(int id)
{
  return pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6);
}

int GetNextGifConcordance(int id)
{
  char out1[64];
  char out2[64];
  return pafGetNextGifConcordance(id, out1, sizeof out1, out2, sizeof out2, nullptr);
}

int BeginAddressSearch(int id)
{
  return pafBeginAddressSearch(id, "query");
}

int GetNextAddressSearch(int id)
{
  char out[64];
  return pafGetNextAddressSearch(id, out, sizeof out);
}

}  // namespace

const std::vector<IdFunction>& IdFunctions()
{
  static const std::vector<IdFunction> kFunctions = {
      {"pafLookupAddress", kFakeLookupAddress, LookupAddress, false},
      {"pafGetDpidId", kFakeLookupAddress, GetDpid, false},
      {"pafGetDpidNonAmasId", kFakeLookupAddress, GetDpidNonAmas, false},
      {"pafFixLastLineId", kFakeFixLastLine, FixLastLine, false},
      {"pafValidatePartialAddressId", kFakeValidatePartialAddress, ValidatePartialAddress, false},
      {"pafGetAddressId", kFakeGetAddress, GetAddress, false},
      {"pafGetNextAddressId", kFakeGetNextAddress, GetNextAddress, false},
      {"pafGetPopupHintId", kFakeGetPopupHint, GetPopupHint, false},
      {"pafGetNextPopupHintId", kFakeGetNextPopupHint, GetNextPopupHint, false},
      {"pafDpidToAddressId", kFakeGetAddress, DpidToAddress, false},
      {"pafGetAddressHintId", kFakeGetAddressHint, GetAddressHint, false},
      {"pafGetNextAddressHintId", kFakeGetNextAddressHint, GetNextAddressHint, false},
      {"pafGetFindStatusId", kFakeGetFindStatus, pafGetFindStatusId, true},
      {"pafGetParsedInputId", kFakeGetParsedInput, GetParsedInput, false},
      {"pafValidateFullAddressId", kFakeValidateFullAddress, ValidateFullAddress, false},
      {"pafFormatAddressId", kFakeFormatAddress, FormatAddress, false},
      {"pafSetGeographicalCodesId", kFakeSetGeographicalCodes, SetGeographicalCodes, false},
      {"pafBeginPolygonSearch", kFakeBeginPolygonSearch, BeginPolygonSearch, false},
      {"pafGetNextAddressInPolygon", kFakeGetNextAddressInPolygon, GetNextAddressInPolygon, false},
      {"pafGetSearchStatistics", kFakeGetSearchStatistics, GetSearchStatistics, false},
      {"pafBeginGifConcordance", kFakeBeginGifConcordance, BeginGifConcordance, false},
      {"pafGetNextGifConcordance", kFakeGetNextGifConcordance, GetNextGifConcordance, false},
      {"pafBeginAddressSearch", kFakeBeginAddressSearch, BeginAddressSearch, false},
      {"pafGetNextAddressSearch", kFakeGetNextAddressSearch, GetNextAddressSearch, false}};
  return kFunctions;
}

}  // namespace blackbox
