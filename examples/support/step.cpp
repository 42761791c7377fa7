#include "step.hpp"

#include <gpuruntime/recipes/memory.hpp>

#include <cstdio>

namespace examples {

using namespace std::chrono_literals;

Step::Step(std::string name) : name_(std::move(name)), watcher_([this] { watch(); }) {}

void Step::finish(const std::string& result) {
  gpuruntime::recipes::synchronise();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin_;
  stop();
  char time[32];
  std::snprintf(time, sizeof(time), seconds < 1s ? "%.1f ms" : "%.2f s", seconds.count() * (seconds < 1s ? 1000 : 1));
  std::printf("  %-36s %10s%s%s\n", name_.c_str(), time, result.empty() ? "" : "   ", result.c_str());
  std::fflush(stdout);
}

void Step::watch() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (int seconds = 1; !wake_.wait_until(lock, begin_ + seconds * 1s, [this] { return isOver_; }); ++seconds) {
    const double share = share_;
    if (share > 0) {
      std::fprintf(stderr, "  ... %s: %d s, %.0f %%\n", name_.c_str(), seconds, 100 * share);
    } else {
      std::fprintf(stderr, "  ... %s: %d s\n", name_.c_str(), seconds);
    }
  }
}

void Step::stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isOver_ = true;
  }
  wake_.notify_all();
  if (watcher_.joinable()) watcher_.join();
}

}  // namespace examples
