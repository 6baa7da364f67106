// Requests for barcodes and for numbers of the sort plan.
#include <algorithm>
#include <optional>

#include "arf/au/property_request.h"
#include "arf/barcode/four_state.h"
#include "arf/format/ascii.h"
#include "qxpaf/arf_au.h"

namespace arf {
namespace {

int StatusOf(FourStateFault fault)
{
  switch (fault) {
    case FourStateFault::None:
      return 0;
    case FourStateFault::Dpid:
      return PAF_AU_ERR_BARCODE_DPID;
    case FourStateFault::Format:
      return PAF_AU_ERR_BARCODE_FORMAT;
    case FourStateFault::CustomerNotTaken:
      return PAF_AU_ERR_CUSTOMER_NOT_TAKEN;
    case FourStateFault::CustomerTooLong:
      return PAF_AU_ERR_CUSTOMER_TOO_LONG;
    case FourStateFault::CustomerCharacter:
      return PAF_AU_ERR_CUSTOMER_CHARACTER;
  }
  return PAF_AU_ERR_INTERNAL;
}

int Encode(const FourStateRequest& barcode, const PropertyRequest& request)
{
  FourStateBars bars;
  const FourStateFault fault = EncodeFourState(barcode, bars);
  if (fault != FourStateFault::None)
    DescribeFault(fault, barcode, request.reason);
  else
    request.out << bars.View();
  return StatusOf(fault);
}

std::string_view Take(std::string_view& text, std::size_t count)
{
  const std::string_view part = text.substr(0, count);
  text.remove_prefix(part.size());
  return part;
}

/** Takes the letter of an encoding; Automatic when there is no text at all. */
std::optional<CustomerEncoding> TakeEncoding(std::string_view& text)
{
  const std::string_view letter = Take(text, 1);
  if (letter.empty()) return CustomerEncoding::Automatic;
  if (letter == "N") return CustomerEncoding::Numeric;
  if (letter == "C") return CustomerEncoding::Text;
  return std::nullopt;
}

using Number = std::string_view SortPlan::Entry::*;

int NotInPlan(std::string_view postcode, const char* column, const PropertyRequest& request)
{
  request.reason << "The sort plan has no " << column << " for the postcode " << postcode << '.';
  return PAF_AU_ERR_NOT_IN_SORT_PLAN;
}

/** 0 when there is a plan to look into. */
int CheckPlan(const PropertyRequest& request)
{
  if (!request.source.sortPlan) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  if (request.source.sortPlan->plan) return 0;
  if (request.source.sortPlan->fault.empty()) return PAF_AU_ERR_NO_SORT_PLAN;
  request.reason << request.source.sortPlan->fault << '.';
  return PAF_AU_ERR_BAD_SORT_PLAN;
}

int ReadNumber(const PropertyRequest& request, Number number, const char* column)
{
  if (const int status = CheckPlan(request); status != 0) return status;
  const std::string_view postcode = Trimmed(request.argument);
  if (!IsPostcode(postcode)) {
    request.reason << '"' << postcode << "\" is no postcode: a postcode has four digits.";
    return PAF_AU_ERR_BAD_POSTCODE;
  }
  const SortPlan::Entry* const entry = request.source.sortPlan->plan->Find(postcode);
  if (!entry || (entry->*number).empty()) return NotInPlan(postcode, column, request);
  request.out << entry->*number;
  return 0;
}

}  // namespace

int ReadBarcode(const PropertyRequest& request)
{
  FourStateRequest barcode;
  barcode.dpid = Trimmed(request.argument);
  return Encode(barcode, request);
}

int ReadBarcode2(const PropertyRequest& request)
{
  std::string_view rest = request.argument;
  FourStateRequest barcode;
  barcode.dpid = Take(rest, kDpidDigits);
  barcode.format = Take(rest, kFormatDigits);
  const std::string_view letter = rest.substr(0, 1);
  const std::optional<CustomerEncoding> encoding = TakeEncoding(rest);
  if (!encoding) {
    request.reason << '"' << letter << "\" is no encoding: N (digits) and C (characters) are.";
    return PAF_AU_ERR_BARCODE_ENCODING;
  }
  barcode.encoding = *encoding;
  barcode.customer = rest;
  return Encode(barcode, request);
}

int ReadBarcode3(const PropertyRequest& request)
{
  std::string_view rest = request.argument;
  FourStateRequest barcode;
  barcode.dpid = Take(rest, kDpidDigits);
  barcode.format = Take(rest, kFormatDigits);
  barcode.customer = rest;
  return Encode(barcode, request);
}

int ReadBsp(const PropertyRequest& request)
{
  return ReadNumber(request, &SortPlan::Entry::bsp, "BSP");
}

int ReadNpsp(const PropertyRequest& request)
{
  return ReadNumber(request, &SortPlan::Entry::npsp, "NPSP");
}

/** Empty where no database is open: the property is there, but nothing has a date. */
int ReadSortPlanDate(const PropertyRequest& request)
{
  if (!request.source.sortPlan) return 0;
  const int status = CheckPlan(request);
  if (status == 0) request.out << request.source.sortPlan->plan->Date();
  return status;
}

}  // namespace arf
