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
     "Fill in field 8, a decimal identifier, or fields 43 and 44, a place, or some of the fields 4 to 6: locality, "
     "state, "
     "postcode."},
    {PAF_AU_ERR_NO_ENUMERATION, "There is no enumeration to continue.",
     "Start one first: a Next function continues what its first function began."},
    {PAF_AU_ERR_UNKNOWN_PROPERTY, "There is no such property.", "Ask for \"Properties\", which lists them."},
    {PAF_AU_ERR_READ_ONLY_PROPERTY, "The property can only be read.",
     "Ask for \"Properties\"; the documentation says which of them can be set."},
    {PAF_AU_ERR_PROPERTY_VALUE, "The property does not take this value.",
     "The documentation says which values it takes."},
    {PAF_AU_ERR_LAYOUT, "The address does not fit the lines that the format option allows.",
     "Allow more or longer lines, or abbreviations."},
    {PAF_AU_ERR_NOT_A_DATABASE, "The file is no address database.", "Name the directory that the builder wrote."},
    {PAF_AU_ERR_DATABASE_VERSION, "The address database has another format version.",
     "Build it again with the builder of this release."},
    {PAF_AU_ERR_DATABASE_TRUNCATED, "The address database is cut short.", "Copy or build it again."},
    {PAF_AU_ERR_DATABASE_DAMAGED, "The address database is damaged.", "Copy or build it again."},
    {PAF_AU_ERR_NOT_OPEN, "The database is not open, or was opened twice.", "Open it once, before anything else."},
    {PAF_AU_ERR_BARCODE_DPID, "The DPID is not a number of up to eight digits.", "Pass the DPID by itself."},
    {PAF_AU_ERR_BARCODE_FORMAT, "The barcode's format control code is not known.", "Use 11, 45, 59, 62, 87 or 92."},
    {PAF_AU_ERR_BARCODE_ENCODING, "The encoding of the customer information is neither N nor C.",
     "Write N for digits, C for characters."},
    {PAF_AU_ERR_CUSTOMER_NOT_TAKEN, "The barcode's format carries no customer information.", "Use format 59 or 62."},
    {PAF_AU_ERR_CUSTOMER_TOO_LONG, "The customer information is too long for the barcode's format.",
     "Format 59 carries 5 characters or 8 digits, format 62 10 characters or 15 digits."},
    {PAF_AU_ERR_CUSTOMER_CHARACTER, "The customer information has a character that cannot be encoded.",
     "Use letters, digits, spaces and #."},
    {PAF_AU_ERR_NO_SORT_PLAN, "The database has no sort plan.",
     "Put the file sortplan.csv into its directory, then open it again."},
    {PAF_AU_ERR_BAD_SORT_PLAN, "The database's sort plan cannot be used.", "Correct the file, then open it again."},
    {PAF_AU_ERR_NOT_IN_SORT_PLAN, "The sort plan has no number for this postcode.",
     "Check the postcode, and whether the plan is current."},
    {PAF_AU_ERR_BAD_POSTCODE, "The text is no postcode.", "Pass four digits, a leading zero included."},
    {PAF_AU_ERR_BAD_POLYGON, "The polygon cannot be read.",
     "Write latitude,longitude;latitude,longitude;… or POLYGON((longitude latitude, …))."},
    {PAF_AU_ERR_BAD_PLACE, "The place cannot be read.", "Write a latitude and a longitude in degrees: -33.86,151.21."},
    {PAF_AU_ERR_NO_PLACES, "The addresses of this database have no coordinates.",
     "Build it from data that has latitudes and longitudes."},
    {PAF_AU_ERR_NOTHING_NEAR, "There is no address near the place.",
     "Raise \"LatLongSearchRange\", or look at the filters that are set."},
    {PAF_AU_ERR_BAD_STATISTICS, "There are no statistics of this kind.",
     "Ask for Polygon, Radius, Postcode, Locality or State."},
    {PAF_AU_ERR_BAD_CONCORDANCE, "The data has no codes of one of these kinds.",
     "Use Postcode, Locality, MeshBlock, StatisticalArea, LocalGovernmentArea or a column of the data."},
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
