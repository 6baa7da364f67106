#include "arf/au/status_text.h"

#include <algorithm>

#include "qxpaf/arf_au.h"

namespace arf {
namespace {

constexpr StatusText kTexts[] = {
    {PAF_AU_ERR_NOT_FOUND, "Nothing in the text was recognised as an address.",
     "Write number, street, locality, state and postcode."},
    {PAF_AU_ERR_SEVERAL_FOUND, "More than one address fits.",
     "Add the unit, the street type, the state or the postcode."},
    {PAF_AU_ERR_WRONG_STREET, "The locality is known, but not the street.",
     "Check the street's name, type and suffix."},
    {PAF_AU_ERR_WRONG_NUMBER, "The street is known, but not the number or unit.", "Check the number and the unit."},
    {PAF_AU_ERR_WRONG_LOCALITY, "The locality is not known, or is not in this state or postcode.",
     "Check locality, state and postcode."},
    {PAF_AU_ERR_INPUT_TOO_LONG, "The text is too long for an address.", "Pass one address at a time."},
    {PAF_AU_ERR_UNKNOWN_DPID, "No address has this identifier.",
     "Check the identifier, and that the right database is open."},
    {PAF_AU_ERR_BAD_QUERY, "The query record cannot be used.",
     "Fill in field 8, a decimal identifier, or some of the fields 4 to 6: locality, state, postcode."},
    {PAF_AU_ERR_NO_ENUMERATION, "There is no enumeration to continue.", "Start one with GetAddress."},
    {PAF_AU_ERR_UNKNOWN_PROPERTY, "There is no such property.", "Ask for \"Properties\", which lists them."},
    {PAF_AU_ERR_READ_ONLY_PROPERTY, "The property can only be read.",
     "Only \"Delimiter\" and \"OutputFields\" can be set."},
    {PAF_AU_ERR_PROPERTY_VALUE, "The property does not take this value.", "Read the property to see a value it takes."},
    {PAF_AU_ERR_NOT_A_DATABASE, "The file is no address database.", "Name the directory that the builder wrote."},
    {PAF_AU_ERR_DATABASE_VERSION, "The address database has another format version.",
     "Build it again with the builder of this release."},
    {PAF_AU_ERR_DATABASE_TRUNCATED, "The address database is cut short.", "Copy or build it again."},
    {PAF_AU_ERR_DATABASE_DAMAGED, "The address database is damaged.", "Copy or build it again."},
    {PAF_AU_ERR_NOT_OPEN, "The database is not open, or was opened twice.", "Open it once, before anything else."},
    {PAF_AU_ERR_INTERNAL, "The plug-in failed inside.", "Report this with the input that led to it."},
};

}  // namespace

const StatusText* FindStatusText(int code)
{
  const auto row =
      std::find_if(std::begin(kTexts), std::end(kTexts), [code](const StatusText& text) { return text.code == code; });
  return row == std::end(kTexts) ? nullptr : row;
}

}  // namespace arf
