/** The requests that carry an argument behind their name: how each is answered. */
#ifndef QXPAF_ARF_AU_PROPERTY_REQUEST_H
#define QXPAF_ARF_AU_PROPERTY_REQUEST_H

#include <string_view>

#include "arf/au/properties.h"

namespace arf {

/** One question: what stands behind the property's name, what it is read from, where answer and reason go. */
struct PropertyRequest
{
  std::string_view argument;
  const PropertySource& source;
  BoundedText& out;
  BoundedText& reason;
};

/** A DPID, as a standard customer barcode. White space around it does not count. */
int ReadBarcode(const PropertyRequest& request);
/** DPID (8 digits), format (2), N or C, customer information; the letter may be left out where nothing follows it. */
int ReadBarcode2(const PropertyRequest& request);
/** DPID (8 digits), format (2), customer information, in N when it is digits alone, otherwise in C. */
int ReadBarcode3(const PropertyRequest& request);

/** Numbers of a postcode in the sort plan, and the plan's date. */
int ReadBsp(const PropertyRequest& request);
int ReadNpsp(const PropertyRequest& request);
int ReadSortPlanDate(const PropertyRequest& request);

/** Version and state of the database in a directory, which need not be open. */
int ReadArfVersion(const PropertyRequest& request);
int ReadArfStatus(const PropertyRequest& request);
/** Version of the open database: its own if it has one, otherwise as ReadArfVersion. Empty where none is open. */
int ReadVersionInfo(const PropertyRequest& request);

}  // namespace arf

#endif
