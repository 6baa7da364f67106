/** One client's searches in an open database. */
#ifndef QXPAF_ARF_AU_AU_SEARCHER_H
#define QXPAF_ARF_AU_AU_SEARCHER_H

#include <memory>
#include <string_view>

#include "arf/au/address_record.h"
#include "arf/au/au_database.h"
#include "arf/au/enumeration.h"
#include "arf/au/last_failure.h"
#include "arf/au/live_objects.h"
#include "arf/au/properties.h"
#include "arf/au/settings.h"
#include "arf/hint/hint_enumeration.h"
#include "arf/match/last_line_fixer.h"
#include "arf/match/matcher.h"
#include "arf/print/address_layout.h"
#include "arf/search/free_text_search.h"
#include "arf/search/place_searches.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/arf_plugin.h"

namespace arf {

class AuSearcher final : public IArfSearcher, private LiveObject
{
 public:
  /** @param database  may be unopened; all searches then fail with PAF_AU_ERR_NOT_OPEN */
  explicit AuSearcher(AuDatabase& database);

  void Release() override;
  IArfDb* GetArfDb() override { return &database_; }

  int LookupAddress(const char* address, char* out, int outSize, int amas) override;
  int FixLastLine(const char* input, char* out, int outSize) override;
  int GetAddress(const char* query, char* out, int outSize) override;
  int GetNextAddress(char* out, int outSize) override;
  int GetFindStatus() override { return findStatus_; }
  int GetParsedInput(char* out, int outSize) override;
  int GetProperties(const char* name, char* out, int outSize) override;
  int SetProperties(const char* name, const char* value, char* errText, int errSize) override;
  void TakeOverFrom(IArfSearcher* previous) override;
  void GetErrorDescription(char* out, int code, int outSize) override;

  int ValidatePartialAddress(const char* input, char* out, int outSize) override;
  int GetPopupHint(const char* text1, const char* text2, int number, char* out, int outSize) override;
  int GetNextPopupHint(char* out, int outSize) override;
  int GetAddressHint(const char* text1, const char* text2, char* out, int outSize) override;
  int GetNextAddressHint(char* out, int outSize) override;
  int ValidateFullAddress(const char* input, char* out, int outSize, int flags, char* resultFlag) override;
  int FormatAddress(const char* input, char* out, long formatOption, int outSize) override;
  int SetGeographicalCodes(const char* codes, char* errText, int errSize) override;
  int BeginPolygonSearch(const char* text1, const char* text2) override;
  int GetNextAddressInPolygon(char* out, int outSize) override;
  int GetSearchStatistics(const char* text1, const char* text2, const char* text3, const char* text4, char* out,
                          int outSize) override;
  int BeginGifConcordance(std::intptr_t a, std::intptr_t b, std::intptr_t c, std::intptr_t d, std::intptr_t e,
                          int n) override;
  int GetNextGifConcordance(char* out1, int size1, char* out2, int size2, void* detail) override;
  int BeginAddressSearch(const char* query) override;
  int GetNextAddressSearch(char* out, int outSize) override;

 private:
  /** Everything that needs an open database. */
  struct Searches
  {
    explicit Searches(std::shared_ptr<const OpenData> opened)
        : data(std::move(opened)),
          matcher(*data->engine),
          fixer(*data->engine),
          addresses(Data()),
          places(Data()),
          freeText(Data()),
          freeTextFilter(Data())
    {
    }
    const Database& Data() const { return data->engine->Data(); }

    std::shared_ptr<const OpenData> data;
    Matcher matcher;
    LastLineFixer fixer;
    InputText query;  ///< of GetAddress
    Enumeration addresses;
    PlaceSearches places;
    FreeTextSearch freeText;
    AddressFilter freeTextFilter;
    HintEnumerations hints;
  };

  /** Whose input GetParsedInput shows. */
  enum class Parsed
  {
    Nothing,
    Address,
    LastLine
  };

  int NotOpen();
  bool IsOpen();
  void AdoptOutputFields(const Database& from, const FieldList& fields);
  LookupAnswer Search(std::string_view address, Rules rules);
  int Lookup(std::string_view address, Rules rules, BoundedText& out);
  int ValidatePartial(std::string_view input, BoundedText& out);
  std::string_view LevelOfRest();
  int ValidateFull(std::string_view input, Rules rules, BoundedText& out, char& verdict);
  int Format(std::string_view input, const LayoutOptions& options, BoundedText& out);
  int Fix(std::string_view input, BoundedText& out);
  int StartAddresses(std::string_view query);
  int StartWithRecord(std::string_view record);
  int StartWithDpid(std::string_view text);
  int StartWithLine(std::string_view line);
  int StartNear(std::string_view latitude, std::string_view longitude);
  int ReadQuery(std::string_view line);
  int FindLocalitiesOf(std::string_view line, std::vector<std::uint32_t>& found);
  int Count(std::string_view in, std::string_view what, std::string_view metres);
  int CountInArea(bool inPolygon, std::string_view what, std::string_view metres);
  int CountInLocalities(CountedIn in, std::string_view line);
  int FindCounted(CountedIn in, std::string_view line, std::vector<std::uint32_t>& found);
  int WriteCurrent(BoundedText& out);
  int FailSearch(Verdict verdict, const Failure& failure);
  int FailLine(Verdict verdict, const Failure& failure);
  int FailQuery(int code, std::string_view detail);
  int CheckFilters();
  int Read(std::string_view property, BoundedText& out);
  int FinishHintStart(InputFault fault, HintEnumeration& hints, BoundedText& out);
  int NextHint(std::unique_ptr<HintEnumeration> HintEnumerations::*which, char* out, int outSize);
  int WriteHint(HintEnumeration& hints, BoundedText& out);

  AuDatabase& database_;  ///< only to name it: it may be gone
  const std::shared_ptr<const CurrentData> current_;
  unsigned version_ = 0;
  std::unique_ptr<Searches> searches_;
  Settings settings_;
  LastFailure lastFailure_;
  Departures departures_;  ///< of the last address search, empty when it found nothing
  int findStatus_ = PAF_AU_FIND_NONE;
  Parsed parsed_ = Parsed::Nothing;
};

}  // namespace arf

#endif
