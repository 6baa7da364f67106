/** A plug-in library and its entry points. */
#ifndef QXPAF_SRC_PLUGINS_ARF_LIBRARY_H
#define QXPAF_SRC_PLUGINS_ARF_LIBRARY_H

#include <string>

#include "plugins/library_wrapper.h"

class IArfDb;
class IArfSearcher;

namespace qxpaf {

/** The entry points of one plug-in; null until resolved, getOtherProperties perhaps also after. */
struct ArfPluginFunctions
{
  IArfDb* (*getDb)() = nullptr;
  IArfSearcher* (*getSearcher)(IArfDb*) = nullptr;
  int (*canUnloadNow)() = nullptr;
  int (*getOtherProperties)(const char* request, char* out, int outSize) = nullptr;
};

/** One open database as an instance sees it. A copy owns nothing; the registry of open databases does. */
struct ArfInfo
{
  IArfDb* db = nullptr;
  ArfPluginFunctions functions;
};

/** The library of one plug-in, named by its base name: "QXArfAu" is libqxarfau.so. */
class ArfLibWrapper : public LibraryWrapper
{
 public:
  explicit ArfLibWrapper(const std::string& baseName);

  bool LoadFunctions(char* errText) override;

  const std::string& BaseName() const { return baseName_; }
  ArfPluginFunctions Functions() const { return functions_; }

 private:
  ArfPluginFunctions functions_;
  std::string baseName_;
};

}  // namespace qxpaf

#endif
