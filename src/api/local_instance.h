/** The two halves of a local instance's life, shared by opening, closing, changing and updating. */
#ifndef QXPAF_SRC_API_LOCAL_INSTANCE_H
#define QXPAF_SRC_API_LOCAL_INSTANCE_H

#include "api/instance_table.h"
#include "errors/boundary.h"
#include "plugins/open_databases.h"

namespace qxpaf {

/** A reference to an open database that is dropped at the end of the scope unless it is kept. */
class DatabaseReference : QXNonCopyable
{
 public:
  explicit DatabaseReference(IArfDb* db) : db_(db) {}
  ~DatabaseReference()
  {
    if (db_ != nullptr) AtBoundary([this] { return CloseArfDb(db_, false, false); });
  }
  void Keep() { db_ = nullptr; }

 private:
  IArfDb* db_;
};

/** Names the instance and attaches a searcher; drops the database's reference when that fails. @return 0, 6404, 6414 */
int AttachDatabase(PafInfo& info, const ArfInfo& arfInfo, const char* arfName);

/**
 * Releases a searcher that no instance has any more and drops its reference to its database.
 *
 * @return 0, or 6494 when it did not say which that is
 */
int ReleaseWithDatabase(IArfSearcher& searcher);

/** ReleaseWithDatabase for the searcher of an instance, which must have one. @return likewise */
int DetachDatabase(PafInfo& info);

}  // namespace qxpaf

#endif
