#include "arf/au/settings.h"

#include <algorithm>
#include <charconv>

#include "arf/au/ascii.h"
#include "arf/au/version.h"
#include "qxpaf/arf_au.h"

namespace arf {
namespace {

constexpr std::string_view kNotice =
    "Not certified for address matching. Identifiers are those of the data that the database was built from.";

using Reader = void (*)(const Database& database, const Settings& settings, BoundedText& out);

/** Where a property's value comes from. */
struct Property
{
  std::string_view name;
  std::string_view constant;  ///< the value, if it never changes
  std::string_view infoKey;   ///< the entry of the database's information that is the value; no entry, no property
  Reader read;                ///< otherwise: from the searcher
  bool (*write)(std::string_view value, const Database& database, Settings& settings, BoundedText& reason);
};

void ReadDelimiter(const Database&, const Settings& settings, BoundedText& out)
{
  out << settings.delimiter;
}

bool WriteDelimiter(std::string_view value, const Database&, Settings& settings, BoundedText& reason)
{
  const auto isPlain = [](char c) {
    const char lower = LowerAscii(c);
    return c > 0 && c != '\n' && !(lower >= 'a' && lower <= 'z') && !(c >= '0' && c <= '9');
  };
  if (value.size() != 1 || !isPlain(value.front())) {
    reason << "The delimiter must be one ASCII character that is no letter, digit or line feed.";
    return false;
  }
  settings.delimiter = value.front();
  return true;
}

void ReadOutputFields(const Database& database, const Settings& settings, BoundedText& out)
{
  settings.outputFields.Write(database, out);
}

bool WriteOutputFields(std::string_view value, const Database& database, Settings& settings, BoundedText& reason)
{
  const std::string_view fault = settings.outputFields.Read(database, value);
  if (!fault.empty()) reason << "Not a list of fields: " << fault << '.';
  return fault.empty();
}

constexpr Property kProperties[] = {
    {"Delimiter", "", "", ReadDelimiter, WriteDelimiter},
    {"OutputFields", "", "", ReadOutputFields, WriteOutputFields},
    {"PafEngineVersion", kEngineVersion, "", nullptr, nullptr},
    {"PafLibVersion", kLibVersion, "", nullptr, nullptr},
    {"PafVersionInfo", "", "version", nullptr, nullptr},
    {"Attribution", "", "attribution", nullptr, nullptr},
    {"Notice", kNotice, "", nullptr, nullptr},
};

constexpr std::string_view kList = "Properties";
constexpr std::string_view kNameByIndex = "PropertyName";

/** Whether a property exists with what is there. */
bool Exists(const Property& property, const Database* database, const Settings* settings)
{
  if (property.read) return database && settings;
  return property.infoKey.empty() || (database && !database->Info(property.infoKey).empty());
}

void ListProperties(const Database* database, const Settings* settings, BoundedText& out)
{
  for (const Property& property : kProperties) {
    if (!Exists(property, database, settings)) continue;
    if (out.Length() > 0) out << ';';
    out << property.name;
  }
}

/** The name with a number from 1; nothing when the number is none or too large. */
void NameByIndex(std::string_view number, const Database* database, const Settings* settings, BoundedText& out)
{
  std::uint32_t index = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), index);
  if (result.ec != std::errc() || result.ptr != number.data() + number.size()) return;
  for (const Property& property : kProperties)
    if (Exists(property, database, settings) && index > 0 && --index == 0) out << property.name;
}

bool StartsIgnoringCase(std::string_view text, std::string_view start)
{
  return text.size() > start.size() && EqualIgnoringCase(text.substr(0, start.size()), start);
}

const Property* FindProperty(std::string_view name)
{
  const auto property = std::find_if(std::begin(kProperties), std::end(kProperties),
                                     [name](const Property& p) { return EqualIgnoringCase(p.name, name); });
  return property == std::end(kProperties) ? nullptr : property;
}

}  // namespace

int ReadProperty(std::string_view name, const Database* database, const Settings* settings, BoundedText& out)
{
  if (EqualIgnoringCase(name, kList)) {
    ListProperties(database, settings, out);
    return 0;
  }
  if (StartsIgnoringCase(name, kNameByIndex)) {
    NameByIndex(name.substr(kNameByIndex.size()), database, settings, out);
    return 0;
  }
  const Property* property = FindProperty(name);
  if (!property || !Exists(*property, database, settings)) return PAF_AU_ERR_UNKNOWN_PROPERTY;
  if (property->read)
    property->read(*database, *settings, out);
  else
    out << (property->infoKey.empty() ? property->constant : database->Info(property->infoKey));
  return 0;
}

int WriteProperty(std::string_view name, std::string_view value, const Database& database, Settings& settings,
                  BoundedText& reason)
{
  const Property* property = FindProperty(name);
  if (property && property->write)
    return property->write(value, database, settings, reason) ? 0 : PAF_AU_ERR_PROPERTY_VALUE;
  const bool isKnown = property || EqualIgnoringCase(name, kList) || StartsIgnoringCase(name, kNameByIndex);
  reason << (isKnown ? "The property \"" : "There is no property \"") << name
         << (isKnown ? "\" can only be read." : "\".");
  return isKnown ? PAF_AU_ERR_READ_ONLY_PROPERTY : PAF_AU_ERR_UNKNOWN_PROPERTY;
}

}  // namespace arf
