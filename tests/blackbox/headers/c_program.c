/* The whole flat interface from a C99 program: every function is there under its plain name, with its signature. */
#include <stdio.h>
#include <string.h>

#include "qxpaf/paf.h"

/* One assignment a function; a wrong signature does not compile, a missing function does not link. */
static int (*const describe)(char*, int, int) = pafGetErrorDescription;
static int (*const openArf)(int*, int, const char*) = pafOpenArfId;
static int (*const openArf2)(int, const char*) = pafOpenArfId2;
static int (*const openPafMem)(int*, int) = pafOpenPafMemId;
static int (*const openPaf)(int*) = pafOpenPafId;
static int (*const openPaf2)(void) = pafOpenPafId2;
static int (*const closePaf)(int) = pafClosePafId;
static int (*const closeAll[])(void) = {pafForceCloseAll, pafUnloadPlugins};
static int (*const lookup)(int, char*, int, int) = pafLookupAddress;
static int (*const inOut[])(int, char*, int) = {pafGetDpidId, pafGetDpidNonAmasId, pafFixLastLineId,
                                                pafValidatePartialAddressId};
static int (*const getAddress)(int, const char*, char*, int) = pafGetAddressId;
static int (*const next[])(int, char*, int) = {pafGetNextAddressId,        pafGetNextPopupHintId,
                                               pafGetNextAddressHintId,    pafGetParsedInputId,
                                               pafGetNextAddressInPolygon, pafGetNextAddressSearch};
static int (*const popupHint)(int, const char*, const char*, int, char*, int) = pafGetPopupHintId;
static int (*const dpidToAddress)(int, long, char*, int) = pafDpidToAddressId;
static int (*const addressHint)(int, const char*, const char*, char*, int) = pafGetAddressHintId;
static int (*const validate)(int, const char*, char*, int, int, char*) = pafValidateFullAddressId;
static int (*const format)(int, const char*, char*, long, int) = pafFormatAddressId;
static int (*const text1[])(int, const char*) = {pafSetGeographicalCodesId, pafBeginAddressSearch};
static int (*const polygon)(int, const char*, const char*) = pafBeginPolygonSearch;
static int (*const statistics)(int, const char*, const char*, const char*, const char*, char*,
                               int) = pafGetSearchStatistics;
static int (*const beginGif)(int, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t, int) = pafBeginGifConcordance;
static int (*const nextGif)(int, char*, int, char*, int, void*) = pafGetNextGifConcordance;
static int (*const border)(int, short, char*, int) = pafGetBorderPostcodesId;
static int (*const record2[])(int, long, char*, long*, long*) = {pafReadLocalityRecordId, pafReadGroupRecordId};
static int (*const pointRecord)(int, long, char*, int) = pafReadPointRecordId;
static int (*const synonymRecord)(int, long, char*, long*) = pafReadSynonymRecordId;
static int (*const borderRecord)(int, int, int*, int*) = pafReadBorderRecordId;
static int (*const corners)(int, void*, void*, void*, void*) = pafGetCornerGeocodesId;
static int (*const ofId[])(int) = {pafGetFindStatusId, pafGetLocalityRecordCountId, pafGetGroupRecordCountId,
                                   pafGetPointRecordCountId, pafGetSynonymRecordCountId};

static int failures = 0;

static void expect(int got, int expected, const char* what)
{
  if (got == expected) return;
  printf("%s answered %d, not %d\n", what, got, expected);
  ++failures;
}

/* Every function refuses an Id that nobody has opened. */
static void refuseUnknownIds(void)
{
  char text[8] = "";
  size_t i;
  expect(lookup(1, text, 8, 0), PAF_ERR_INVALID_ID, "pafLookupAddress");
  for (i = 0; i < sizeof inOut / sizeof *inOut; ++i) expect(inOut[i](1, text, 8), PAF_ERR_INVALID_ID, "in-out");
  for (i = 0; i < sizeof next / sizeof *next; ++i) expect(next[i](1, text, 8), PAF_ERR_INVALID_ID, "next");
  for (i = 0; i < sizeof text1 / sizeof *text1; ++i) expect(text1[i](1, "a"), PAF_ERR_INVALID_ID, "one text");
  expect(getAddress(1, "a", text, 8), PAF_ERR_INVALID_ID, "pafGetAddressId");
  expect(popupHint(1, "a", "b", 1, text, 8), PAF_ERR_INVALID_ID, "pafGetPopupHintId");
  expect(dpidToAddress(1, 1L, text, 8), PAF_ERR_INVALID_ID, "pafDpidToAddressId");
  expect(addressHint(1, "a", "b", text, 8), PAF_ERR_INVALID_ID, "pafGetAddressHintId");
  expect(validate(1, "a", text, 8, 0, NULL), PAF_ERR_INVALID_ID, "pafValidateFullAddressId");
  expect(format(1, "a", text, 0L, 8), PAF_ERR_INVALID_ID, "pafFormatAddressId");
  expect(polygon(1, "a", "b"), PAF_ERR_INVALID_ID, "pafBeginPolygonSearch");
  expect(statistics(1, "a", "b", "c", "d", text, 8), PAF_ERR_INVALID_ID, "pafGetSearchStatistics");
  expect(beginGif(1, 1, 2, 3, 4, 5, 6), PAF_ERR_INVALID_ID, "pafBeginGifConcordance");
  expect(nextGif(1, text, 8, text, 8, NULL), PAF_ERR_INVALID_ID, "pafGetNextGifConcordance");
  expect(closePaf(1), PAF_ERR_INVALID_ID, "pafClosePafId");
}

static void doNoWork(void)
{
  char text[8] = "";
  long numbers[2] = {0, 0};
  int words[2] = {0, 0};
  size_t i;
  expect(border(1, 2000, text, 8), PAF_ERR_NOT_IMPLEMENTED, "pafGetBorderPostcodesId");
  for (i = 0; i < 2; ++i) expect(record2[i](1, 1L, text, numbers, numbers + 1), PAF_ERR_NOT_IMPLEMENTED, "record");
  expect(pointRecord(1, 1L, text, 8), PAF_ERR_NOT_IMPLEMENTED, "pafReadPointRecordId");
  expect(synonymRecord(1, 1L, text, numbers), PAF_ERR_NOT_IMPLEMENTED, "pafReadSynonymRecordId");
  expect(borderRecord(1, 1, words, words + 1), PAF_ERR_NOT_IMPLEMENTED, "pafReadBorderRecordId");
  expect(corners(1, text, text, text, text), PAF_ERR_NOT_IMPLEMENTED, "pafGetCornerGeocodesId");
  expect(ofId[0](1), -1, "pafGetFindStatusId");
  for (i = 1; i < sizeof ofId / sizeof *ofId; ++i) expect(ofId[i](1), 0, "record count");
}

/* The configuration file is an empty one. */
static void openNothing(void)
{
  int id = 0;
  char text[64] = "";
  size_t i;
  expect(openArf(&id, 0, "abcd.x"), PAF_ERR_UNKNOWN_COUNTRY, "pafOpenArfId");
  expect(openArf2(0, "abcd.x"), -PAF_ERR_UNKNOWN_COUNTRY, "pafOpenArfId2");
  expect(openPafMem(&id, 1), PAF_ERR_NOT_CONFIGURED, "pafOpenPafMemId");
  expect(openPaf(&id), PAF_ERR_NOT_CONFIGURED, "pafOpenPafId");
  expect(openPaf2(), -PAF_ERR_NOT_CONFIGURED, "pafOpenPafId2");
  for (i = 0; i < 2; ++i) expect(closeAll[i](), 0, "closing all");
  expect(describe(text, PAF_ERR_UNKNOWN_COUNTRY, sizeof text), 0, "pafGetErrorDescription");
  expect(strcmp(text, "ERR_QXARF_UNKNOWN_COUNTRY"), 0, "the text");
}

int main(void)
{
  refuseUnknownIds();
  doNoWork();
  openNothing();
  return failures == 0 ? 0 : 1;
}
