#include "country.h"

#include <algorithm>

namespace tool {
namespace {

struct CountrySynonym
{
  std::string_view written;
  std::string_view code;
};
constexpr CountrySynonym kSynonyms[] = {{"USA", "US"}, {"AUS", "AU"}, {"NZL", "NZ"}, {"GBR", "UK"}, {"GB", "UK"}};

constexpr CountrySynonym kTitles[] = {{"NZ", "NZ"}, {"NEWZEALAND", "NZ"}, {"NEW ZEALAND", "NZ"}, {"UK", "UK"},
                                      {"GB", "UK"}, {"USA", "US"},        {"US ", "US"}};

std::string CodeOf(const std::string& written)
{
  const std::string upper = UpperCase(written);
  for (const CountrySynonym& synonym : kSynonyms) {
    if (upper == synonym.written) {
      return std::string(synonym.code);
    }
  }
  const bool known =
      std::any_of(kCountries.begin(), kCountries.end(), [&](const Country& country) { return upper == country.code; });
  return known ? upper : "";
}

template <class Change>
std::string Changed(std::string text, char first, char last, Change change)
{
  for (char& c : text) {
    if (c >= first && c <= last) {
      c = change(c);
    }
  }
  return text;
}

}  // namespace

std::string UpperCase(std::string text)
{
  return Changed(std::move(text), 'a', 'z', [](char c) { return static_cast<char>(c - 'a' + 'A'); });
}

std::string LowerCase(std::string text)
{
  return Changed(std::move(text), 'A', 'Z', [](char c) { return static_cast<char>(c - 'A' + 'a'); });
}

DatabaseName SplitDatabaseName(const std::string& name)
{
  const std::size_t dot = name.find('.');
  const bool split = dot == 2 || dot == 3;
  const std::string country = CodeOf(split ? name.substr(0, dot) : name);
  if (country.empty()) {
    return {"", name};
  }
  return {country, split ? name.substr(dot + 1) : ""};
}

std::string CountryOfDatabaseTitle(const std::string& title)
{
  const std::string upper = UpperCase(title);
  for (const CountrySynonym& row : kTitles) {
    if (upper.compare(0, row.written.size(), row.written) == 0) {
      return std::string(row.code);
    }
  }
  return "AU";
}

std::optional<DllName> SplitDllName(const std::string& name)
{
  constexpr std::string_view prefix = "DLL:";
  if (UpperCase(name.substr(0, prefix.size())) != prefix) {
    return std::nullopt;
  }
  const std::string rest = name.substr(prefix.size());
  const std::size_t semicolon = rest.find(';');
  const std::string path = semicolon == std::string::npos ? "" : rest.substr(semicolon + 1);
  return DllName{"lib" + LowerCase(rest.substr(0, semicolon)) + ".so", path};
}

}  // namespace tool
