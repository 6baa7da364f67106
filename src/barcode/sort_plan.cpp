/** Sort plans of postcodes, which the default instance answers. */
#include <cstring>
#include <string>

#include "api/default_instance.h"
#include "errors/boundary.h"
#include "platform/bounded.h"
#include "qxpaf/paf.h"

using namespace qxpaf;

namespace {

constexpr int kAnswerSize = 20;

int AskSortPlan(const char* keyword, const char* postcode, char* answer)
{
  int id = 0;
  if (const int status = GetDefaultInstance(&id, true, 0); status != 0) return status;
  const std::string name = std::string(keyword) + postcode;
  return pafGetPropertiesId(id, name.c_str(), answer, kAnswerSize);
}

/** Replaces a postcode by its plan, or by nothing. An answer as long as the size is copied whole: callers rely on it.
 */
void PostcodeToPlan(const char* keyword, char* text, int size)
{
  char answer[kAnswerSize];
  answer[0] = '\0';
  const int status = AtBoundary([&] { return AskSortPlan(keyword, text, answer); });
  answer[sizeof answer - 1] = '\0';
  const std::size_t length = std::strlen(answer);
  const bool fits = size >= 0 && length <= static_cast<std::size_t>(size);
  CopyCut(text, status == 0 && fits ? length + 1 : 1, answer);
}

}  // namespace

int pafPostcodeToBsp(char* text, int size)
{
  PostcodeToPlan("BSP:", text, size);
  return PAF_OK;
}

int pafPostcodeToNpsp(char* text, int size)
{
  PostcodeToPlan("NPSP:", text, size);
  return PAF_OK;
}
