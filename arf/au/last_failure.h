/** What the last failed operation of a searcher has to say, kept until it is asked. */
#ifndef QXPAF_ARF_AU_LAST_FAILURE_H
#define QXPAF_ARF_AU_LAST_FAILURE_H

#include <string_view>

#include "arf/match/bounded_text.h"
#include "arf/match/decision.h"

namespace arf {

class LastFailure
{
 public:
  /** Records a failed search. @return code */
  int Record(int code, const Failure& failure);
  /** Records another failure with a sentence of its own, cut if it is long. @return code */
  int Record(int code, std::string_view detail);

  /** Replaces what can be done about the failure recorded last. @param remedy  a sentence; must outlive this object */
  void Advise(std::string_view remedy) { remedy_ = remedy; }

  /**
   * Appends the text of one of the plug-in's codes: the detail if the last failure had this code, otherwise what the
   * code means, and then what can be done. Nothing for codes that are not the plug-in's.
   *
   * @param database  the one that the failures came from; null when there was none
   */
  void Describe(int code, const Database* database, BoundedText& text) const;

 private:
  int code_ = 0;
  Failure failure_;
  FixedText<200> detail_;
  std::string_view remedy_;  ///< empty: that of the code
};

}  // namespace arf

#endif
