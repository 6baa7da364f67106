// The ranked search with words in any order.
#include "arf/au/address_record.h"
#include "arf/au/au_searcher.h"
#include "arf/au/boundary.h"

namespace arf {

int AuSearcher::BeginAddressSearch(const char* query)
{
  return Guarded([&] {
    if (!IsOpen()) return NotOpen();
    FreeTextSearch& search = searches_->freeText;
    search.Reset();
    if (const int status = CheckFilters(); status != 0) return status;
    PointFilter* filter = searches_->freeTextFilter.Configure(settings_.search);
    if (search.Start(TextOf(query), filter) != InputFault::None) {
      Failure failure;
      failure.fault = Fault::TooLong;
      return FailSearch(Verdict::TooLong, failure);
    }
    findStatus_ = search.Current() ? PAF_AU_FIND_MATCHED : PAF_AU_FIND_NOTHING;
    return 0;
  });
}

int AuSearcher::GetNextAddressSearch(char* out, int outSize)
{
  return Answer(out, outSize, [&](BoundedText& text) {
    if (!IsOpen()) return NotOpen();
    FreeTextSearch& search = searches_->freeText;
    if (!search.IsStarted()) return lastFailure_.Record(PAF_AU_ERR_NO_ENUMERATION, std::string_view());
    const Point* point = search.Current();
    if (!point) {
      AppendEmptyRecord(text, settings_.outputFields, settings_.delimiter);
      return 0;
    }
    AppendAddressRecord(text, *searches_->data, *point, settings_.outputFields, settings_.delimiter);
    if (text.IsWhole()) search.Advance();
    return 0;
  });
}

}  // namespace arf
