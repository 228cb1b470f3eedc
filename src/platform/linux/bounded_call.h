// A dialogue that nothing inside it bounds, such as the opening of a connection to a bus that says nothing:
// it runs on a thread of its own and costs the caller the deadline and not more.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <utility>

#include "platform/linux/posix.h"
#include "platform/result.h"

namespace zendrix::platform {

// What `body` returns, or `late` when that takes too long: the thread is left to itself then, so `body` may
// touch only what it owns. kUnavailable when there is no thread, or `body` throws.
template <class T>
Result<T> WithinDeadline(std::chrono::steady_clock::time_point deadline, std::function<Result<T>()> body,
                         const std::function<Result<T>()>& late) {
  const auto task = std::make_shared<std::packaged_task<Result<T>()>>(std::move(body));
  auto answer = task->get_future();
  if (!RunInBackground([task] { (*task)(); })) return Error{ErrorKind::kUnavailable, "no thread to be had"};
  if (answer.wait_until(deadline) != std::future_status::ready) return late();
  try {
    return answer.get();
  } catch (const std::exception& error) {
    return Error{ErrorKind::kUnavailable, error.what()};
  }
}

}  // namespace zendrix::platform
