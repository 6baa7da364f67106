/** Counts the plug-in's live objects, so that it knows when it may be unloaded. */
#ifndef QXPAF_ARF_AU_LIVE_OBJECTS_H
#define QXPAF_ARF_AU_LIVE_OBJECTS_H

#include <atomic>

namespace arf {

class LiveObject
{
 public:
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;
  static bool Exist() { return count_.load(std::memory_order_acquire) != 0; }

 protected:
  LiveObject() { count_.fetch_add(1, std::memory_order_relaxed); }
  ~LiveObject() { count_.fetch_sub(1, std::memory_order_release); }

 private:
  static inline std::atomic<int> count_{0};
};

}  // namespace arf

#endif
