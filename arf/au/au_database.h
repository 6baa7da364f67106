/** An open address database, as the library sees it. */
#ifndef QXPAF_ARF_AU_AU_DATABASE_H
#define QXPAF_ARF_AU_AU_DATABASE_H

#include <memory>
#include <string>

#include "arf/au/live_objects.h"
#include "arf/au/open_data.h"
#include "qxpaf/arf_plugin.h"

namespace arf {

class AuDatabase final : public IArfDb, private LiveObject
{
 public:
  void Release() override;
  const char* GetPath() override { return path_.c_str(); }
  const char* GetCountry() override { return "AU"; }
  int* RefCount() override { return &users_; }
  int GetOpenMode() override { return mode_; }
  int Open(const char* path, int mode, char* errText, int errSize) override;
  void Close() override;

  /** Where searchers find what they read. */
  std::shared_ptr<const CurrentData> Current() const { return current_; }

 private:
  int OpenFile(const char* path, int mode, char* errText, int errSize);

  std::string path_;
  int mode_ = 0;
  int users_ = 0;
  bool isOpen_ = false;
  const std::shared_ptr<CurrentData> current_ = std::make_shared<CurrentData>();
};

}  // namespace arf

#endif
