#include "blackbox/support/id_functions.h"

namespace blackbox {

int IdFunction::call(int id) const
{
  char text[64] = "1 High St";
  return run(id, "1 High St", text, sizeof text);
}

const std::vector<IdFunction>& IdFunctions()
{
  static const std::vector<IdFunction> kFunctions = [] {
    std::vector<IdFunction> functions;
    for (const ExportedFunction& function : ExportedFunctions()) {
      const bool needsInstance = function.on == On::kId && function.refusals.noInstance != 0;
      if (!needsInstance || function.operation == kFakeOperationCount) continue;
      functions.push_back({function.name, function.operation, function.run, function.failure == Failure::kReturned});
    }
    return functions;
  }();
  return kFunctions;
}

}  // namespace blackbox
