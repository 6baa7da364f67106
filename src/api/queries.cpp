/** Looking up, correcting and listing addresses. */
#include <cstdio>
#include <cstring>

#include "api/query_frame.h"
#include "platform/bounded.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

using namespace qxpaf;

namespace {

// What the plug-in may write where it does not write into the caller's buffer, terminator included.
constexpr int kLookupSize = 2048;
constexpr int kLastLineSize = 512;
constexpr int kPartialAddressSize = 10;
constexpr int kAddressSize = 1024;

/**
 * A query whose answer replaces its input: the plug-in writes into a buffer of Size bytes, and only a success is copied
 * back, cut to the caller's size.
 */
template <int Size, class Remote, class Operation>
int QueryInPlace(int id, char* text, int size, Remote&& request, Operation&& operation)
{
  const auto remote = [&](int serverId) { return request(serverId, text, size); };
  return Query(id, Reconnect::First, remote, [&](IArfSearcher& searcher) {
    char result[std::size_t{Size}];
    result[0] = '\0';
    const int status = operation(searcher, result);
    result[Size - 1] = '\0';
    if (status == 0 && text != nullptr) CopyCut(text, Capacity(size), result);
    return status;
  });
}

/** A record query that names a delivery point: seven empty fields, then its identifier. */
void BuildDpidQuery(IArfSearcher& searcher, long dpid, char* query, std::size_t querySize)
{
  constexpr std::size_t kFieldsBefore = 7;
  char delimiter[kAddressSize];
  delimiter[0] = '\0';
  searcher.GetProperties("Delimiter", delimiter, sizeof delimiter);
  std::memset(query, delimiter[0] != '\0' ? delimiter[0] : '\t', kFieldsBefore);
  std::snprintf(query + kFieldsBefore, querySize - kFieldsBefore, "%ld", dpid);
}

}  // namespace

int pafLookupAddress(int id, char* address, int size, int amas)
{
  const auto request = amas != 0 ? GetDpidIdViaSocket : GetDpidNonAmasIdViaSocket;
  return QueryInPlace<kLookupSize>(id, address, size, request, [&](IArfSearcher& searcher, char* result) {
    return searcher.LookupAddress(address, result, kLookupSize, amas);
  });
}

int pafGetDpidId(int id, char* address, int size)
{
  return pafLookupAddress(id, address, size, 1);
}

int pafGetDpidNonAmasId(int id, char* address, int size)
{
  return pafLookupAddress(id, address, size, 0);
}

int pafFixLastLineId(int id, char* lastLine, int size)
{
  return QueryInPlace<kLastLineSize>(
      id, lastLine, size, FixLastLineIdViaSocket,
      [&](IArfSearcher& searcher, char* result) { return searcher.FixLastLine(lastLine, result, kLastLineSize); });
}

int pafValidatePartialAddressId(int id, char* address, int size)
{
  return QueryInPlace<kPartialAddressSize>(
      id, address, size, ValidatePartialAddressIdViaSocket, [&](IArfSearcher& searcher, char* result) {
        return searcher.ValidatePartialAddress(address, result, kPartialAddressSize);
      });
}

int pafValidateFullAddressId(int id, const char* address, char* out, int size, int flags, char* resultFlag)
{
  char unwanted = '\0';
  char* const flag = resultFlag != nullptr ? resultFlag : &unwanted;
  *flag = '\0';
  const auto remote = [&](int serverId) {
    char message[256] = {};
    const int status = ValidateFullAddressIdViaSocket(serverId, address, out, size, flags, message);
    *flag = message[0];
    return status;
  };
  return Query(id, Reconnect::First, remote,
               [&](IArfSearcher& searcher) { return searcher.ValidateFullAddress(address, out, size, flags, flag); });
}

int pafFormatAddressId(int id, const char* address, char* out, long formatOption, int size)
{
  return Query(
      id, Reconnect::Never,
      [&](int serverId) { return FormatAddressIdViaSocket(serverId, address, out, formatOption, size); },
      [&](IArfSearcher& searcher) { return searcher.FormatAddress(address, out, formatOption, size); });
}

int pafGetAddressId(int id, const char* query, char* out, int size)
{
  return Query(
      id, Reconnect::First, [&](int serverId) { return GetAddressIdViaSocket(serverId, query, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetAddress(query, out, size); });
}

int pafGetNextAddressId(int id, char* out, int size)
{
  return Query(
      id, Reconnect::Never, [&](int serverId) { return GetNextAddressIdViaSocket(serverId, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetNextAddress(out, size); });
}

int pafDpidToAddressId(int id, long dpid, char* out, int size)
{
  return AtBoundary([&] {
    const auto remote = [&](PafInfo& info) { return DpidToAddressIdViaSocket(info.serverId, dpid, out, size); };
    return WithInstance(id, Reconnect::First, remote, [&](IArfSearcher& searcher) {
      char query[64];
      char result[kAddressSize];
      BuildDpidQuery(searcher, dpid, query, sizeof query);
      result[0] = '\0';
      const int status = searcher.GetAddress(query, result, sizeof result);
      result[sizeof result - 1] = '\0';
      if (status != 0) return RecordFailure(status, id, nullptr);
      return CopyWhole(out, Capacity(size), result) ? 0 : static_cast<int>(PAF_ERR_BUFFER_TOO_SMALL);
    });
  });
}

int pafGetPopupHintId(int id, const char* text1, const char* text2, int number, char* out, int size)
{
  return Query(
      id, Reconnect::First,
      [&](int serverId) { return GetPopupHintIdViaSocket(serverId, text1, text2, number, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetPopupHint(text1, text2, number, out, size); });
}

int pafGetNextPopupHintId(int id, char* out, int size)
{
  // Alone among the "next" calls this one reopens a lost remote instance; clients depend on it.
  return Query(
      id, Reconnect::First, [&](int serverId) { return GetNextPopupHintIdViaSocket(serverId, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetNextPopupHint(out, size); });
}

int pafGetAddressHintId(int id, const char* text1, const char* text2, char* out, int size)
{
  return Query(
      id, Reconnect::First, [&](int serverId) { return GetAddressHintIdViaSocket(serverId, text1, text2, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetAddressHint(text1, text2, out, size); });
}

int pafGetNextAddressHintId(int id, char* out, int size)
{
  return Query(
      id, Reconnect::Never, [&](int serverId) { return GetNextAddressHintIdViaSocket(serverId, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetNextAddressHint(out, size); });
}

int pafGetFindStatusId(int id)
{
  // The result is a find status, so what the frame finds wrong (and a plug-in that throws) can only be told as -1.
  constexpr int kNoFindStatus = -1;
  int findStatus = kNoFindStatus;
  AtBoundary([&] {
    return WithInstance(
        id, Reconnect::Never, [&](PafInfo& info) { return findStatus = GetFindStatusIdViaSocket(info.serverId); },
        [&](IArfSearcher& searcher) { return findStatus = searcher.GetFindStatus(); });
  });
  return findStatus;
}

int pafGetParsedInputId(int id, char* out, int size)
{
  return Query(
      id, Reconnect::Never, [&](int serverId) { return GetParsedInputIdViaSocket(serverId, out, size); },
      [&](IArfSearcher& searcher) { return searcher.GetParsedInput(out, size); });
}

int pafSetGeographicalCodesId(int id, const char* codes)
{
  return AtBoundary([&] {
    const auto remote = [&](PafInfo& info) {
      const int status = SetGeographicalCodesIdViaSocket(info.serverId, codes);
      if (status == 0) RememberProperty(info, "GeographicalCodes", codes != nullptr ? codes : "");
      return status;
    };
    return WithInstance(id, Reconnect::Never, remote, [&](IArfSearcher& searcher) {
      char errText[kErrorTextSize] = {};
      const int status = searcher.SetGeographicalCodes(codes, errText, sizeof errText);
      errText[sizeof errText - 1] = '\0';
      return RecordFailure(status, id, errText);
    });
  });
}
