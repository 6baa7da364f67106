/** The functions without an Id: each is the function with one, called on the calling thread's default instance. */
#include "api/default_instance.h"
#include "api/library_properties.h"
#include "errors/boundary.h"
#include "platform/bounded.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "remote/remote_mode.h"

using namespace qxpaf;

namespace {

// What callers of the functions without a size are bound to provide.
constexpr int kImpliedSize = 255;
constexpr int kImpliedFormatSize = 250;

constexpr int kNoFindStatus = -1;

enum class IfMissing
{
  Open,
  PassZero  ///< the Id of no instance
};

/** Calls `query` with the Id of the thread's default instance. */
template <class Query>
int OnDefault(Query&& query, IfMissing ifMissing = IfMissing::Open)
{
  return AtBoundary([&] {
    int id = 0;
    const int status = GetDefaultInstance(&id, ifMissing == IfMissing::Open, 0);
    return status != 0 ? status : query(id);
  });
}

template <class Query>
int OnDefaultIfOpen(Query&& query)
{
  return OnDefault(query, IfMissing::PassZero);
}

}  // namespace

int pafGetDpid(char* address, int length)
{
  return OnDefault([&](int id) { return pafGetDpidId(id, address, SizeForLength(length)); });
}

int pafGetDpidNonAmas(char* address, int length)
{
  return OnDefault([&](int id) { return pafGetDpidNonAmasId(id, address, SizeForLength(length)); });
}

int pafFixLastLine(char* lastLine, int length)
{
  return OnDefault([&](int id) { return pafFixLastLineId(id, lastLine, SizeForLength(length)); });
}

int pafGetAddress(const char* query, char* out)
{
  return OnDefault([&](int id) { return pafGetAddressId(id, query, out, kImpliedSize); });
}

int pafGetNextAddress(char* out)
{
  return OnDefault([&](int id) { return pafGetNextAddressId(id, out, kImpliedSize); });
}

int pafGetPopupHint(const char* text1, const char* text2, int number, char* out, int size)
{
  return OnDefault([&](int id) { return pafGetPopupHintId(id, text1, text2, number, out, size); });
}

int pafGetNextPopupHint(char* out, int size)
{
  return OnDefault([&](int id) { return pafGetNextPopupHintId(id, out, size); });
}

int pafDpidToAddress(long dpid, char* out, int size)
{
  return OnDefault([&](int id) { return pafDpidToAddressId(id, dpid, out, size); });
}

int pafGetAddressHint(const char* text1, const char* text2, char* out)
{
  return OnDefault([&](int id) { return pafGetAddressHintId(id, text1, text2, out, kImpliedSize); });
}

int pafGetNextAddressHint(char* out)
{
  return OnDefault([&](int id) { return pafGetNextAddressHintId(id, out, kImpliedSize); });
}

int pafGet_FindStatus(void)
{
  int findStatus = kNoFindStatus;
  OnDefault([&](int id) { return findStatus = pafGetFindStatusId(id); });
  return findStatus;
}

int pafGet_ParsedInput(char* out)
{
  return OnDefault([&](int id) { return pafGetParsedInputId(id, out, kImpliedSize); });
}

int pafGetProperties(const char* name, char* out, int size)
{
  // What concerns the process is told even when the library could not start; it looks no Id up.
  if (IsProcessProperty(name != nullptr ? name : "")) return pafGetPropertiesId(0, name, out, size);
  return OnDefaultIfOpen([&](int id) { return pafGetPropertiesId(id, name, out, size); });
}

int pafSetProperties(const char* name, const char* value)
{
  return AtBoundary([&] {
    if (SetConnectionProperty(name != nullptr ? name : "", value != nullptr ? value : "")) {
      return static_cast<int>(PAF_OK);
    }
    return OnDefault([&](int id) { return pafSetPropertiesId(id, name, value); });
  });
}

int pafValidateFullAddress(const char* address, char* out, int size, int flags, char* resultFlag)
{
  if (resultFlag != nullptr) *resultFlag = '\0';
  return OnDefault([&](int id) { return pafValidateFullAddressId(id, address, out, size, flags, resultFlag); });
}

int pafFormatAddress(const char* address, char* out, long formatOption)
{
  return OnDefaultIfOpen(
      [&](int id) { return pafFormatAddressId(id, address, out, formatOption, kImpliedFormatSize); });
}

int pafFormatAddressS(char* address, int length)
{
  if (AtBoundary([] { return IsRemoteMode() ? 1 : 0; }) == 1) {
    return AtBoundary([&] { return FormatAddressSViaSocket(address, SizeForLength(length)); });
  }
  char formatted[256];
  formatted[0] = '\0';
  const int status = OnDefaultIfOpen(
      [&](int id) { return pafFormatAddressId(id, address, formatted, 0, static_cast<int>(sizeof formatted)); });
  formatted[sizeof formatted - 1] = '\0';
  // Nothing is reported: callers print what they find in the buffer, which holds at least the terminator of its input.
  const std::size_t capacity = length > 0 ? Capacity(SizeForLength(length)) : 1;
  CopyCut(address, capacity, status == 0 ? formatted : "");
  return PAF_OK;
}
