#include "arf/au/au_database.h"

#include "arf/au/boundary.h"
#include "arf/au/database_status.h"
#include "arf/match/bounded_text.h"

namespace arf {
namespace {

/** Mode 4, and any that may come, are like 1. */
OpenMode ModeOf(int mode)
{
  if (mode == static_cast<int>(OpenMode::Memory)) return OpenMode::Memory;
  if (mode == static_cast<int>(OpenMode::Mapped)) return OpenMode::Mapped;
  return OpenMode::Disk;
}

}  // namespace

void AuDatabase::Release()
{
  delete this;
}

int AuDatabase::Open(const char* path, int mode, char* errText, int errSize)
{
  BoundedText error(errText, errSize);
  return Guarded([&] { return OpenFile(path, mode, errText, errSize); });
}

int AuDatabase::OpenFile(const char* path, int mode, char* errText, int errSize)
{
  BoundedText error(errText, errSize);
  if (isOpen_) {
    error << "The database " << path_ << " is open already.";
    return PAF_AU_ERR_NOT_OPEN;
  }
  path_ = TextOf(path);
  mode_ = mode;
  OpenResult result;
  const OpenMode openMode = ModeOf(mode);
  // Loading reads the whole file anyway; mapping is for opening at once.
  const Verification verification = openMode == OpenMode::Memory ? Verification::Whole : Verification::Quick;
  std::unique_ptr<Database> database = Database::Open(path_, openMode, result, verification);
  if (database) {
    auto engine = std::make_unique<const Engine>(std::move(database));
    current_->Set(std::make_shared<const OpenData>(std::move(engine), ReadSortPlanOf(path_)));
    isOpen_ = true;
    return 0;
  }
  error << result.message;
  return StatusOf(result.failure).status;
}

void AuDatabase::Close()
{
  current_->Set(nullptr);
  isOpen_ = false;
}

}  // namespace arf
