// A plug-in built from yesterday's declarations: every virtual function must still stand at its place.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class FrozenContractTest : public testing::Test
{
 protected:
  FrozenContractTest() : handle(dlopen("libfakefrozen.so", RTLD_NOW))
  {
    EXPECT_NE(handle, nullptr) << dlerror();
    takeCalls = Symbol<void (*)(char*, int)>("frozen_calls");
  }

  template <class Function>
  Function Symbol(const char* name)
  {
    return reinterpret_cast<Function>(dlsym(handle, name));
  }

  /** The slots called since the last asking, with their arguments. */
  std::string Calls()
  {
    char text[1024];
    takeCalls(text, sizeof text);
    return text;
  }

  Workspace workspace{std::vector<std::string>{}};
  void* handle;
  void (*takeCalls)(char*, int) = nullptr;
  char out[32] = "";
  char out2[32] = "";
};

TEST_F(FrozenContractTest, DatabaseOperationsStandAtTheirSlots)
{
  IArfDb* db = Symbol<IArfDb* (*)()>("GetDb")();
  EXPECT_EQ(db->Open("fail", -5, out, 20), 7);
  EXPECT_STREQ(out, "7");
  EXPECT_EQ(Calls(), "D7('fail',-5,20) ");
  EXPECT_STREQ(db->GetPath(), "fail");
  EXPECT_EQ(Calls(), "D3() ");
  EXPECT_STREQ(db->GetCountry(), "XX");
  EXPECT_EQ(Calls(), "D4() ");
  EXPECT_EQ(*db->RefCount(), 0);
  EXPECT_EQ(Calls(), "D5() ");
  EXPECT_EQ(db->GetOpenMode(), 6);
  EXPECT_EQ(Calls(), "D6() ");
  db->Close();
  EXPECT_EQ(Calls(), "D8() ");
  db->Release();
  EXPECT_EQ(Calls(), "D2() ");
}

TEST_F(FrozenContractTest, SearcherOperationsStandAtTheirSlots)
{
  IArfDb* db = Symbol<IArfDb* (*)()>("GetDb")();
  IArfSearcher* searcher = Symbol<IArfSearcher* (*)(IArfDb*)>("GetSearcher")(db);
  char flag = 'q';
  char detail[] = "detail";

  EXPECT_EQ(searcher->GetArfDb(), db);
  EXPECT_EQ(Calls(), "S3() ");
  EXPECT_EQ(searcher->LookupAddress("a", out, 11, 1), 4);
  EXPECT_EQ(searcher->FixLastLine("a", out, 12), 5);
  EXPECT_EQ(searcher->ValidatePartialAddress("a", out, 13), 6);
  EXPECT_EQ(Calls(), "S4('a',11,1) S5('a',12) S6('a',13) ");
  EXPECT_EQ(searcher->GetAddress("a", out, 14), 7);
  EXPECT_EQ(searcher->GetNextAddress(out, 15), 8);
  EXPECT_EQ(searcher->GetPopupHint("a", "b", -3, out, 16), 9);
  EXPECT_EQ(searcher->GetNextPopupHint(out, 17), 10);
  EXPECT_EQ(searcher->GetAddressHint("a", "b", out, 18), 11);
  EXPECT_EQ(searcher->GetNextAddressHint(out, 19), 12);
  EXPECT_EQ(Calls(), "S7('a',14) S8(15) S9('a','b',-3,16) S10(17) S11('a','b',18) S12(19) ");
  EXPECT_EQ(searcher->GetFindStatus(), 13);
  EXPECT_EQ(searcher->GetParsedInput(out, 20), 14);
  EXPECT_EQ(searcher->GetProperties("n", out, 21), 15);
  EXPECT_EQ(searcher->SetProperties("n", "v", out, 22), 16);
  EXPECT_EQ(Calls(), "S13() S14(20) S15('n',21) S16('n','v',22) ");
  EXPECT_EQ(searcher->ValidateFullAddress("a", out, 23, 24, &flag), 17);
  EXPECT_EQ(flag, 'v');
  EXPECT_EQ(searcher->FormatAddress("a", out, LONG_MIN, 25), 18);
  EXPECT_EQ(searcher->SetGeographicalCodes("c", out, 26), 19);
  EXPECT_EQ(Calls(), "S17('a',23,24) S18('a'," + std::to_string(LONG_MIN) + ",25) S19('c',26) ");
  EXPECT_EQ(searcher->BeginPolygonSearch("a", "b"), 20);
  EXPECT_EQ(searcher->GetNextAddressInPolygon(out, 27), 21);
  EXPECT_EQ(searcher->GetSearchStatistics("a", "b", "c", "d", out, 28), 22);
  EXPECT_EQ(Calls(), "S20('a','b') S21(27) S22('a','b','c','d',28) ");
  searcher->TakeOverFrom(searcher);
  searcher->GetErrorDescription(out, 29, 30);
  EXPECT_STREQ(out, "24");
  EXPECT_EQ(Calls(), "S23('itself') S24(29,30) ");
  EXPECT_EQ(searcher->BeginGifConcordance(1, -2, LONG_MAX, 4, LONG_MIN, 6), 25);
  EXPECT_EQ(searcher->GetNextGifConcordance(out, 31, out2, 32, detail), 26);
  EXPECT_EQ(Calls(),
            "S25(1,-2," + std::to_string(LONG_MAX) + ",4," + std::to_string(LONG_MIN) + ",6) S26(31,32,'detail') ");
  EXPECT_EQ(searcher->BeginAddressSearch("q"), 27);
  EXPECT_EQ(searcher->GetNextAddressSearch(out, 32), 28);
  EXPECT_EQ(Calls(), "S27('q') S28(32) ");
  searcher->Release();
  EXPECT_EQ(Calls(), "S2() ");
  db->Release();
}

TEST_F(FrozenContractTest, TheLibraryCallsTheSlotsOfThePlugin)
{
  const int id = Open("DLL:FakeFrozen;/p", 3);
  EXPECT_EQ(Calls(), "D7('/p',3,255) D5() ");
  char text[16] = "in";
  EXPECT_EQ(pafLookupAddress(id, text, sizeof text, 0), 4);
  EXPECT_EQ(pafFixLastLineId(id, text, sizeof text), 5);
  EXPECT_EQ(pafValidatePartialAddressId(id, text, sizeof text), 6);
  EXPECT_EQ(Calls(), "S4('in',2048,0) S5('in',512) S6('in',10) ");
  EXPECT_EQ(pafGetAddressId(id, "q", out, 21), 7);
  EXPECT_EQ(pafGetNextAddressId(id, out, 22), 8);
  EXPECT_EQ(pafGetPopupHintId(id, "a", "b", 5, out, 23), 9);
  EXPECT_EQ(pafGetNextPopupHintId(id, out, 24), 10);
  EXPECT_EQ(pafGetAddressHintId(id, "a", "b", out, 25), 11);
  EXPECT_EQ(pafGetNextAddressHintId(id, out, 26), 12);
  EXPECT_EQ(pafGetFindStatusId(id), 13);
  EXPECT_EQ(pafGetParsedInputId(id, out, 27), 14);
  EXPECT_EQ(Calls(), "S7('q',21) S8(22) S9('a','b',5,23) S10(24) S11('a','b',25) S12(26) S13() S14(27) ");
  char flag = 'q';
  EXPECT_EQ(pafValidateFullAddressId(id, "a", out, 28, 29, &flag), 17);
  EXPECT_EQ(flag, 'v');
  EXPECT_EQ(pafFormatAddressId(id, "a", out, 30L, 31), 18);
  EXPECT_EQ(pafSetGeographicalCodesId(id, "c"), 19);
  EXPECT_EQ(pafBeginPolygonSearch(id, "a", "b"), 20);
  EXPECT_EQ(pafGetNextAddressInPolygon(id, out, 32), 21);
  EXPECT_EQ(pafGetSearchStatistics(id, "a", "b", "c", "d", out, 31), 22);
  EXPECT_EQ(Calls(), "S17('a',28,29) S18('a',30,31) S19('c',256) S20('a','b') S21(32) S22('a','b','c','d',31) ");
  EXPECT_EQ(Describe(22, 100), "24");
  EXPECT_EQ(Calls(), "S24(22,100) ");
  EXPECT_EQ(pafDpidToAddressId(id, 5, out, 32), 7);
  EXPECT_NE(Calls().find("S15('Delimiter',1024) S7('"), std::string::npos);
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(FrozenContractTest, TheLibraryPassesTheGatesOfAnotherCountry)
{
  const int id = Open("DLL:FakeFrozen;/p");
  Calls();
  char detail[] = "detail";
  EXPECT_EQ(pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6), 25);
  EXPECT_NE(Calls().find("S25(1,2,3,4,5,6) "), std::string::npos);
  EXPECT_EQ(pafGetNextGifConcordance(id, out, 30, out2, 31, detail), 26);
  EXPECT_NE(Calls().find("S26(30,31,'detail') "), std::string::npos);
  EXPECT_EQ(pafBeginAddressSearch(id, "q"), 27);
  EXPECT_NE(Calls().find("S27('q') "), std::string::npos);
  EXPECT_EQ(pafGetNextAddressSearch(id, out, 32), 28);
  EXPECT_NE(Calls().find("S28(32) "), std::string::npos);
  EXPECT_EQ(pafClosePafId(id), 0);
  EXPECT_EQ(Calls(), "S3() S2() D5() D8() D2() ");
}

/** The slot of a virtual function, as the C++ ABI of the platform keeps it in a pointer to member. */
template <class Member>
long SlotOf(Member member)
{
  struct
  {
    long pointer;
    long adjustment;
  } parts;
  static_assert(sizeof parts == sizeof member);
  std::memcpy(&parts, &member, sizeof parts);
  return (parts.pointer - 1) / static_cast<long>(sizeof(void*));
}

TEST(ContractHeader, KeepsItsSlots)
{
  EXPECT_EQ(SlotOf(&IArfDb::Release), 2);
  EXPECT_EQ(SlotOf(&IArfDb::Close), 8);
  EXPECT_EQ(SlotOf(&IArfSearcher::Release), 2);
  EXPECT_EQ(SlotOf(&IArfSearcher::TakeOverFrom), 23);
  EXPECT_EQ(SlotOf(&IArfSearcher::GetNextAddressSearch), 28);
  EXPECT_EQ(sizeof(IArfDb), sizeof(void*));
  EXPECT_EQ(sizeof(IArfSearcher), sizeof(void*));
}

}  // namespace
}  // namespace blackbox
