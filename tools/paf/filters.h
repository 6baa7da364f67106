/** The options that restrict what searches by place and by words find. */
#ifndef PAF_TOOL_FILTERS_H
#define PAF_TOOL_FILTERS_H

#include <CLI/CLI.hpp>
#include <string>

#include "session.h"

namespace tool {

struct Filters
{
  std::string states;
  std::string kinds;
  std::string codes;
  bool namedBuildings = false;
};

void AddFilterOptions(CLI::App& app, Filters& filters);

/** Throws Failure with the reason when a filter is refused. */
void ApplyFilters(Session& session, const Filters& filters);

/** Sets a property; throws Failure, naming the option, when it is refused. */
void SetOrExplain(Session& session, const std::string& property, const std::string& value, const std::string& option);

}  // namespace tool

#endif
