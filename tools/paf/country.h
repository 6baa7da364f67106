/** Countries, and the plug-in library that serves each. */
#ifndef PAF_TOOL_COUNTRY_H
#define PAF_TOOL_COUNTRY_H

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

struct Country
{
  std::string_view code;
  std::string_view library;
};

inline constexpr std::array<Country, 5> kCountries = {{{"AU", "libqxarfau.so"},
                                                       {"NZ", "libqxarfnz.so"},
                                                       {"US", "libqxarfus.so"},
                                                       {"UK", "libqxarfuk.so"},
                                                       {"INT", "libqxarfint.so"}}};

/** A database name taken apart as the open functions do. */
struct DatabaseName
{
  std::string country;  ///< a code of kCountries; empty when the name has none
  std::string rest;     ///< "Main" of "AU.Main"
};
DatabaseName SplitDatabaseName(const std::string& name);

/** The country that the text behind "DATABASENAME=" of a PAF.ver means. */
std::string CountryOfDatabaseTitle(const std::string& title);

/** Names of the form "DLL:Base;path". */
struct DllName
{
  std::string library;
  std::string path;
};
std::optional<DllName> SplitDllName(const std::string& name);

std::string UpperCase(std::string text);
std::string LowerCase(std::string text);

}  // namespace tool

#endif
