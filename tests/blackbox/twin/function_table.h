/** Calls of any function that a client library forwards, and what the server's answer to each must be. */
#ifndef QXPAF_TESTS_BLACKBOX_TWIN_FUNCTION_TABLE_H
#define QXPAF_TESTS_BLACKBOX_TWIN_FUNCTION_TABLE_H

#include <string>
#include <vector>

#include "blackbox/support/exported_functions.h"
#include "blackbox/twin/twin.h"

namespace blackbox {

/** How a plug-in answers a buffer that is too small. */
enum class PlugIn
{
  kRefuses,
  kCuts
};

struct Input
{
  const char* name;
  std::string text;
};

/** A request has several texts: a TAB or a line feed in one of them moves the others. */
bool TakesSeveralTexts(const ExportedFunction& function);

/** There is no request for it. */
bool IsLocalOnly(const ExportedFunction& function);

/** An answer that is no status has no words. */
Answer WithoutWords(const ExportedFunction& function, Answer answer);

/** Calls a function with its text `in` and a buffer of `size`. */
Answer CallOn(const ExportedFunction& function, int id, const std::string& in, int size);

/** "pafGetDpidId on address in 64" */
std::string CaseName(const std::string& function, const std::string& input, int size);

/** The text as the server reads it where it is a request's last. */
std::string SeenByServer(const ExportedFunction& function, const std::string& text);

/** Functions that the table can call. */
std::vector<const ExportedFunction*> Callable(bool (*isWanted)(const ExportedFunction&));

/**
 * Adds calls to a twin, each on an instance, or a thread's default instance, of its own that has an enumeration of
 * every kind under way and has searched before.
 */
class FunctionTable
{
 public:
  /** Opens the databases in both processes. */
  FunctionTable(Twin& twin, PlugIn plugIn);

  void Add(const ExportedFunction& function, const Input& input, int size);

 private:
  void AddLocalOnly(const ExportedFunction& function, const std::string& name, const TwinCall& call, int size);
  std::string AddReference(const ExportedFunction& function, const Input& input, const std::string& seen);
  void AddForwarded(const ExportedFunction& function, const Input& input, const std::string& seen, int size,
                    const std::string& name, const TwinCall& call);

  Twin& twin_;
  PlugIn plugIn_;
  std::vector<std::string> references_;
};

}  // namespace blackbox

#endif
