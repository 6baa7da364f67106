/** Addresses and parsed inputs as records: fields separated by a delimiter. */
#ifndef QXPAF_ARF_AU_ADDRESS_RECORD_H
#define QXPAF_ARF_AU_ADDRESS_RECORD_H

#include <cstdint>

#include "arf/au/open_data.h"
#include "arf/au/record_fields.h"
#include "arf/match/bounded_text.h"
#include "arf/match/input_text.h"
#include "arf/match/reading.h"
#include "qxpaf/arf_au.h"

namespace arf {

/** Appends an address; the delimiter and control characters inside values become spaces. */
void AppendAddressRecord(BoundedText& text, const OpenData& source, const Point& point, const FieldList& fields,
                         char delimiter);
/** The same by ordinal; the point is not decoded for fields that do not need it. */
void AppendAddressRecord(BoundedText& text, const OpenData& source, std::uint32_t ordinal, const FieldList& fields,
                         char delimiter);

/** Appends the record that ends an enumeration: the delimiters alone. */
void AppendEmptyRecord(BoundedText& text, const FieldList& fields, char delimiter);

/** Appends an identifier with eight digits. */
void AppendDpid(BoundedText& text, std::uint32_t dpid);

/** Appends how an input was read, as a whole record in the input's own words and the tables' full forms. */
void AppendParsedRecord(BoundedText& text, const InputText& input, const Reading& reading, PafAuFindStatus status,
                        char delimiter);

}  // namespace arf

#endif
