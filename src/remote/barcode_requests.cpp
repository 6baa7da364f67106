// The requests for barcodes and sort plans.
#include "qxpaf/remote.h"
#include "remote/replies.h"
#include "remote/request.h"

using namespace qxpaf;

int BuildBarcode_ViaSocket(const char* a, const char* b, const char* c, int n, char* out, int size)
{
  return CallForText(Request("pafBuildBarcode_", a, b, c, n).Text(), out, size);
}

int CustInfoBarcodeViaSocket(char* buf, int size)
{
  return CallForText(Request("pafCustInfoBarcode", buf).Text(), buf, size);
}

int GenerateBarcodeViaSocket(char* buf, int size)
{
  return CallForText(Request("pafGenerateBarcode", buf).Text(), buf, size);
}

int DpidToBarcodeViaSocket(char* buf, int size)
{
  return CallForText(Request("pafDpidToBarcode", buf).Text(), buf, size);
}

int PostcodeToBspViaSocket(char* buf, int size)
{
  return CallForText(Request("pafPostcodeToBsp", buf).Text(), buf, size);
}

int PostcodeToNpspViaSocket(char* buf, int size)
{
  return CallForText(Request("pafPostcodeToNpsp", buf).Text(), buf, size);
}
