#ifndef QXPAF_SRC_API_CHANGE_ARF_H
#define QXPAF_SRC_API_CHANGE_ARF_H

namespace qxpaf {

/**
 * Moves an instance to another database. The new database is open before the old searcher is released; when it then
 * gives no searcher, the instance has none any more.
 *
 * @return 0, also when the instance is on the database of that name already; 6405, 6412, 6411; as opening
 */
int ChangeArf(int id, int memoryMode, const char* arfName);

}  // namespace qxpaf

#endif
