/**
 * Barcode requests to the Australian plug-in, which holds the algorithm. Local in remote mode too.
 *
 * Callers rely on plug-ins being told one byte more than the size that was passed.
 */
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "errors/boundary.h"
#include "platform/bounded.h"
#include "plugins/open_databases.h"
#include "qxpaf/paf.h"

using namespace qxpaf;

namespace {

constexpr std::size_t kDpidLength = 8;
constexpr std::size_t kFormatLength = 2;
constexpr std::size_t kCustomerLength = 15;
constexpr std::size_t kMostBars = 67;
constexpr int kFewestBars = 37;

bool BeginsWithDpid(std::string_view text)
{
  const std::string_view dpid = text.substr(0, kDpidLength);
  return std::all_of(dpid.begin(), dpid.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/** Puts the bar counts that old callers give in the place of the format control code into codes. */
bool RewriteFormat(std::string& text)
{
  const std::string_view format = std::string_view(text).substr(kDpidLength, kFormatLength);
  char& last = text[kDpidLength + kFormatLength - 1];
  if (format == "52") {
    last = '9';
  } else if (format == "67") {
    last = '2';
  } else {
    return false;
  }
  return true;
}

/** The request for customer information. @return false when its format is not known */
bool CustomerRequest(std::string_view text, std::string& request)
{
  if (text.size() <= kDpidLength) {
    request.append("Barcode:").append(text);
    return true;
  }
  request = text;
  // Callers rely on a text without information behind the format going to the plug-in without a keyword.
  if (text.size() <= kDpidLength + kFormatLength) return true;
  if (!RewriteFormat(request)) return false;
  request.insert(0, "Barcode3:");
  return true;
}

std::string_view Prefix(const char* text, std::size_t length)
{
  return std::string_view(text).substr(0, length);
}

}  // namespace

int pafDpidToBarcode(char* text, int size)
{
  return AtBoundary([&]() -> int {
    if (!BeginsWithDpid(text)) return PAF_ERR_BARCODE;
    if (size < kFewestBars) return PAF_ERR_BUFFER_TOO_SMALL;
    const std::string request = std::string("Barcode:") + text;
    return GetPropertyFromDll(request.c_str(), text, SizeForLength(size));
  });
}

int pafCustInfoBarcode(char* text, int size)
{
  return AtBoundary([&]() -> int {
    std::string request;
    if (!CustomerRequest(text, request)) return PAF_ERR_BARCODE;
    const int status = GetPropertyFromDll(request.c_str(), text, SizeForLength(size));
    if (status != 0) return status;
    return text[0] != '\0' ? PAF_OK : PAF_ERR_BARCODE;
  });
}

int pafGenerateBarcode(char* text, int size)
{
  const int status = AtBoundary([&] {
    const std::string request = std::string("Barcode2:") + text;
    return GetPropertyFromDll(request.c_str(), text, SizeForLength(size));
  });
  if (status != 0) text[0] = '\0';
  return PAF_OK;
}

int pafBuildBarcode_(const char* a, const char* b, const char* c, int flag, char* out, int* lengthOut)
{
  return AtBoundary([&]() -> int {
    std::string request;
    request.reserve(64);  // once is enough: this is done for every letter of a mailing
    request.append("Barcode2:").append(Prefix(b, kDpidLength)).append(Prefix(a, kFormatLength));
    request.append(flag != 0 ? "N" : "C").append(Prefix(c, kCustomerLength));
    char answer[128];
    answer[0] = '\0';
    const int status = GetPropertyFromDll(request.c_str(), answer, static_cast<int>(sizeof answer));
    if (status != 0) return status;
    answer[sizeof answer - 1] = '\0';
    const std::size_t bars = std::strlen(answer);
    if (bars == 0 || bars > kMostBars) return PAF_ERR_BARCODE;
    if (out != nullptr) CopyCut(out, kMostBars + 1, answer);
    if (lengthOut != nullptr) *lengthOut = static_cast<int>(bars);
    return PAF_OK;
  });
}
