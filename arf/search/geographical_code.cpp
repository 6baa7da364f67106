#include "arf/search/geographical_code.h"

#include <algorithm>

#include "arf/format/ascii.h"

namespace arf {
namespace {

struct KindName
{
  std::string_view name;
  std::string_view column;
};

constexpr KindName kNames[] = {
    {"MeshBlock", "mesh_block"},
    {"StatisticalArea", "statistical_area"},
    {"LocalGovernmentArea", "local_government_area"},
};

std::size_t Append(CodeText& text, std::size_t length, std::string_view part)
{
  if (length > 0 && !part.empty() && length < text.size()) text[length++] = ' ';
  const std::size_t taken = std::min(part.size(), text.size() - length);
  std::copy_n(part.begin(), taken, text.begin() + static_cast<std::ptrdiff_t>(length));
  return length + taken;
}

std::string_view LocalityCode(const Locality& locality, CodeText& text)
{
  std::size_t length = 0;
  for (const std::string_view part : {locality.name, locality.state, locality.postcode})
    length = Append(text, length, part);
  return {text.data(), length};
}

}  // namespace

std::optional<CodeKind> FindCodeKind(const Database& database, std::string_view name)
{
  if (EqualIgnoringCase(name, "Postcode")) return CodeKind{CodeKind::Postcode, 0};
  if (EqualIgnoringCase(name, "Locality")) return CodeKind{CodeKind::Locality, 0};
  const auto row = std::find_if(std::begin(kNames), std::end(kNames),
                                [&](const KindName& r) { return EqualIgnoringCase(r.name, name); });
  const std::string_view column = row == std::end(kNames) ? name : row->column;
  for (std::uint32_t i = 0; i < database.AttributeCount(); ++i)
    if (EqualIgnoringCase(database.AttributeName(i), column)) return CodeKind{CodeKind::Attribute, i};
  return std::nullopt;
}

std::string_view CodeOf(const Database& database, CodeKind kind, std::uint32_t ordinal, const Locality& locality,
                        CodeText& text)
{
  if (kind.source == CodeKind::Postcode) return locality.postcode;
  if (kind.source == CodeKind::Locality) return LocalityCode(locality, text);
  return database.AttributeOf(ordinal, kind.column, text);
}

bool IsSameCode(CodeKind kind, std::string_view written, std::string_view code)
{
  if (EqualIgnoringCase(written, code)) return true;
  if (kind.source != CodeKind::Locality || written.empty()) return false;
  // The state and the postcode are the last two words.
  const std::size_t postcode = code.rfind(' ');
  const std::size_t state = postcode == std::string_view::npos ? postcode : code.substr(0, postcode).rfind(' ');
  return state != std::string_view::npos && EqualIgnoringCase(written, code.substr(0, state));
}

}  // namespace arf
