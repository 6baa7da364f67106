/** Moving the open databases onto newly installed ones, beside the serving of requests. */
#ifndef PAFD_UPDATE_H
#define PAFD_UPDATE_H

#include <atomic>
#include <thread>

namespace pafd {

class Update
{
 public:
  Update() = default;
  /** Waits for an update that is running. */
  ~Update();
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;

  /** Starts an update, which logs what it moved; one that is running already has to do. */
  void Start();

  bool IsRunning() const { return isRunning_; }

 private:
  void Run();

  std::atomic<bool> isRunning_ = false;
  std::thread thread_;
};

}  // namespace pafd

#endif
