#include "tools/Pipeline.h"

namespace zel {

namespace {

/// Answers that wait for their turn, all together.
constexpr std::size_t kMostHeld = std::size_t{8} * 1024 * 1024;

/// Shorter texts are put together.
constexpr std::size_t kPiece = std::size_t{64} * 1024;

}  // namespace

template <typename Condition>
void JobQueue::Wait(std::unique_lock<std::mutex>& lock, Condition&& condition) {
  changed_.wait(lock, [&] { return failure_ || condition(); });
  if (failure_) throw Stopped();
}

void JobQueue::WaitForRoom() {
  std::unique_lock lock(mutex_);
  Wait(lock, [this] { return taken_ - turn_ < mostJobs_; });
}

std::size_t JobQueue::TakeNumber() {
  const std::lock_guard lock(mutex_);
  return taken_++;
}

bool JobQueue::IsTurnOf(std::size_t number) const {
  const std::lock_guard lock(mutex_);
  return turn_ == number;
}

void JobQueue::WaitForTurn(std::size_t number) {
  std::unique_lock lock(mutex_);
  Wait(lock, [this, number] { return turn_ == number; });
}

void JobQueue::WaitForAll() {
  std::unique_lock lock(mutex_);
  Wait(lock, [this] { return turn_ == taken_; });
}

void JobQueue::EndTurn() {
  const std::lock_guard lock(mutex_);
  ++turn_;
  changed_.notify_all();
}

bool JobQueue::Hold(std::size_t bytes) {
  const std::lock_guard lock(mutex_);
  if (held_ + bytes > kMostHeld) return false;
  held_ += bytes;
  return true;
}

void JobQueue::Release(std::size_t bytes) {
  const std::lock_guard lock(mutex_);
  held_ -= bytes;
}

void JobQueue::BeginWork() {
  std::unique_lock lock(mutex_);
  Wait(lock, [this] { return !isAlone_; });
  ++working_;
}

void JobQueue::EndWork() {
  const std::lock_guard lock(mutex_);
  --working_;
  changed_.notify_all();
}

void JobQueue::BeginAlone() {
  std::unique_lock lock(mutex_);
  isAlone_ = true;
  Wait(lock, [this] { return working_ == 0; });
}

void JobQueue::EndAlone() {
  const std::lock_guard lock(mutex_);
  isAlone_ = false;
  changed_.notify_all();
}

void JobQueue::Fail(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = std::move(failure);
  changed_.notify_all();
}

void JobQueue::RethrowFailure() {
  const std::lock_guard lock(mutex_);
  if (failure_) std::rethrow_exception(failure_);
}

Turn::Turn(JobQueue& queue, std::size_t number, const Emit& emit)
    : queue_(queue), number_(number), emit_(emit) {}

Turn::~Turn() { Drop(); }

void Turn::Write(std::string_view piece) {
  text_ += piece;
  if (text_.size() >= kPiece) Settle();
}

void Turn::Settle() {
  if (queue_.IsTurnOf(number_)) {
    EmitAll();
    return;
  }
  if (text_.empty()) return;
  held_.emplace_back();
  if (queue_.Hold(text_.size())) {
    held_.back().swap(text_);
    return;
  }
  held_.pop_back();
  // Who waits doesn't stand in the way of a job that has to work alone.
  queue_.EndWork();
  queue_.WaitForTurn(number_);
  queue_.BeginWork();
  EmitAll();
}

void Turn::Drop() {
  for (const std::string& text : held_) {
    queue_.Release(text.size());
  }
  held_.clear();
  text_.clear();
}

void Turn::EmitAll() {
  hasLeft_ = hasLeft_ || !held_.empty() || !text_.empty();
  for (std::string& text : held_) {
    emit_(text);
    queue_.Release(text.size());
    text.clear();
  }
  held_.clear();
  if (!text_.empty()) emit_(text_);
  text_.clear();
}

}  // namespace zel
