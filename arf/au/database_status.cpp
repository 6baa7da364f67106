#include "arf/au/database_status.h"

#include <algorithm>
#include <iterator>

#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace arf {
namespace {

constexpr DatabaseStatus kStatuses[] = {
    {OpenFailure::None, 0, "ARF OK"},
    {OpenFailure::CannotOpen, PAF_ERR_OPEN_FILE, "ARF Not Found"},
    {OpenFailure::NotADatabase, PAF_AU_ERR_NOT_A_DATABASE, "ARF Not A Database"},
    {OpenFailure::WrongVersion, PAF_AU_ERR_DATABASE_VERSION, "ARF Wrong Format Version"},
    {OpenFailure::Truncated, PAF_AU_ERR_DATABASE_TRUNCATED, "ARF Truncated"},
    {OpenFailure::Damaged, PAF_AU_ERR_DATABASE_DAMAGED, "ARF Damaged"},
    {OpenFailure::OutOfMemory, PAF_ERR_OUT_OF_MEMORY, "ARF Not Checked"},
};

constexpr DatabaseStatus kUnknown{OpenFailure::None, PAF_AU_ERR_INTERNAL, ""};

}  // namespace

const DatabaseStatus& StatusOf(OpenFailure failure)
{
  const auto row = std::find_if(std::begin(kStatuses), std::end(kStatuses),
                                [failure](const DatabaseStatus& status) { return status.failure == failure; });
  return row == std::end(kStatuses) ? kUnknown : *row;
}

}  // namespace arf
