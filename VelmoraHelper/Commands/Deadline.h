// Waits for something that may never answer.
#pragma once

#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

namespace velmora {

/// What was waited for did not come in time. `what()` says how long that was.
class DeadlinePassed : public std::exception {
 public:
  explicit DeadlinePassed(std::chrono::milliseconds waited)
      : text_("no answer within " + std::to_string(std::chrono::ceil<std::chrono::seconds>(waited).count()) +
              " seconds") {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

/// The result of `work`, which runs on a thread of its own, or what it throws. Throws DeadlinePassed when it
/// has not ended in time; the thread is left behind then, so `work` must own what it uses and the program
/// should end soon.
template <class Work>
auto within(std::chrono::milliseconds deadline, Work work) {
  using Result = std::invoke_result_t<Work>;
  std::packaged_task<Result()> task(std::move(work));
  auto result = task.get_future();
  std::thread(std::move(task)).detach();
  if (result.wait_for(deadline) != std::future_status::ready) throw DeadlinePassed(deadline);
  return result.get();
}

}  // namespace velmora
