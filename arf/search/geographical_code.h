/** Codes that divide the country, and the one that an address has: postcode, locality, mesh block and the like. */
#ifndef QXPAF_ARF_SEARCH_GEOGRAPHICAL_CODE_H
#define QXPAF_ARF_SEARCH_GEOGRAPHICAL_CODE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "arf/format/database.h"

namespace arf {

/** A kind of code that a database has. */
struct CodeKind
{
  enum Source : std::uint8_t
  {
    Postcode,
    Locality,
    Attribute
  };
  Source source = Postcode;
  std::uint32_t column = 0;  ///< of attributes
};

/**
 * A kind by name, ignoring case: "Postcode", "Locality", "MeshBlock", "StatisticalArea", "LocalGovernmentArea", or the
 * name of an attribute column.
 */
std::optional<CodeKind> FindCodeKind(const Database& database, std::string_view name);

/** Room for a code. */
using CodeText = AttributeText;

/**
 * The code of a point; empty where it has none. Localities are "SYDNEY NSW 2000".
 *
 * @param locality  the one that the point is in
 * @return a part of the file, or of `text`
 */
std::string_view CodeOf(const Database& database, CodeKind kind, std::uint32_t ordinal, const Locality& locality,
                        CodeText& text);

/** Whether a written code means the code: the same, ignoring case; of localities, also the name alone. */
bool IsSameCode(CodeKind kind, std::string_view written, std::string_view code);

}  // namespace arf

#endif
