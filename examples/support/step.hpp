/// @file
/// The steps of a program, with their times.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace examples {

/// A step of the work. finish() prints its name and time on stdout. While it takes longer than a second, each second a
/// line on stderr says that it is under way, and how far it is where it tells.
///
///     Step step("sort by customer");
///     ...
///     step.finish("3000000 rows");
class Step {
 public:
  explicit Step(std::string name);
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  ~Step() { stop(); }

  /// Says how much is done, from 0 to 1.
  void reach(double share) noexcept { share_ = share; }

  /// Waits for the device, and prints the line, with what came of the step.
  void finish(const std::string& result = "");

 private:
  void watch();
  void stop();

  std::string name_;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::atomic<double> share_{0};
  std::mutex mutex_;
  std::condition_variable wake_;
  bool isOver_ = false;
  std::thread watcher_;
};

}  // namespace examples
