// The requests that ask an instance about addresses.
#include "qxpaf/remote.h"
#include "remote/replies.h"
#include "remote/request.h"

using namespace qxpaf;

int GetDpidIdViaSocket(int id, char* buf, int size)
{
  return CallForText(Request("pafGetDpidId", id, buf).Text(), buf, size);
}

int GetDpidNonAmasIdViaSocket(int id, char* buf, int size)
{
  return CallForText(Request("pafGetDpidNonAmasId", id, buf).Text(), buf, size);
}

int FixLastLineIdViaSocket(int id, char* buf, int size)
{
  return CallForText(Request("pafFixLastLineId", id, buf).Text(), buf, size);
}

int ValidatePartialAddressIdViaSocket(int id, char* buf, int size)
{
  return CallForText(Request("pafValidatePartialAddressId", id, buf).Text(), buf, size);
}

int GetAddressIdViaSocket(int id, const char* in, char* out, int size)
{
  return CallForText(Request("pafGetAddressId", id, in).Text(), out, size);
}

int GetNextAddressIdViaSocket(int id, char* out, int size)
{
  return CallForText(Request("pafGetNextAddressId", id).Text(), out, size);
}

int GetBorderPostcodesIdViaSocket(int id, short postcode, char* out, int size)
{
  return CallForText(Request("pafGetBorderPostcodesId", id, postcode).Text(), out, size);
}

// Only the first text of a hint is kept free of TABs; the second may hold several lines.
int GetPopupHintIdViaSocket(int id, const char* a, const char* b, int n, char* out, int size)
{
  return CallForText(Request("pafGetPopupHintId", id, TabFreeText(a).Text(), b, n).Text(), out, size);
}

int GetNextPopupHintIdViaSocket(int id, char* out, int size)
{
  return CallForText(Request("pafGetNextPopupHintId", id).Text(), out, size);
}

int DpidToAddressIdViaSocket(int id, long dpid, char* out, int size)
{
  return CallForText(Request("pafDpidToAddressId", id, dpid).Text(), out, size);
}

int GetAddressHintIdViaSocket(int id, const char* a, const char* b, char* out, int size)
{
  return CallForText(Request("pafGetAddressHintId", id, TabFreeText(a).Text(), b).Text(), out, size);
}

int GetNextAddressHintIdViaSocket(int id, char* out, int size)
{
  return CallForText(Request("pafGetNextAddressHintId", id).Text(), out, size);
}

int GetFindStatusIdViaSocket(int id)
{
  return CallForStatus(Request("pafGetFindStatusId", id).Text());
}

int GetParsedInputIdViaSocket(int id, char* out, int size)
{
  return CallForText(Request("pafGetParsedInputId", id).Text(), out, size);
}

int ValidateFullAddressIdViaSocket(int id, const char* in, char* out, int size, int flags, char* message)
{
  return CallForText(Request("pafValidateFullAddressId", id, flags, in).Text(), out, size, message);
}

int FormatAddressIdViaSocket(int id, const char* in, char* out, long format, int size)
{
  return CallForText(Request("pafFormatAddressId", id, format, in).Text(), out, size);
}

int FormatAddressSViaSocket(char* buf, int size)
{
  return CallForText(Request("pafFormatAddressS", buf).Text(), buf, size);
}

int FormatAddressViaSocket(const char* in, char* out, long format, int size)
{
  return CallForText(Request("pafFormatAddress", format, in).Text(), out, size);
}

int BeginPolygonSearchViaSocket(int id, const char* a, const char* b)
{
  const TwoNumbers numbers(b);
  WholeRequest request("pafBeginPolygonSearch", id, numbers.First(), numbers.Second(), a);
  return request.Text() != nullptr ? CallForStatus(request.Text()) : kNoMemoryForRequest;
}

int GetNextAddressInPolygonViaSocket(int id, char* out, int size)
{
  return CallForText(Request("pafGetNextAddressInPolygon", id).Text(), out, size);
}

int GetSearchStatisticsViaSocket(int id, const char* a, const char* b, const char* c, const char* d, char* out,
                                 int size)
{
  WholeRequest request("pafGetSearchStatistics", id, a, b, c, d);
  return request.Text() != nullptr ? CallForText(request.Text(), out, size) : kNoMemoryForRequest;
}
