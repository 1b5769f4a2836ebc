#include "tools/tqstore/ProgressBar.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace tqstore {

namespace {

using namespace std::chrono_literals;

constexpr auto kBetweenLines = 100ms;
constexpr auto kSpeedIsMeasuredOver = 3s;

int terminalColumns() {
  constexpr int kUsual = 80;
  winsize size{};
  const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsual;
}

}  // namespace

ProgressBar::ProgressBar(std::string title)
    : progress_{.title = std::move(title)}, isTerminal_(::isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() { hide(); }

void ProgressBar::show(std::int64_t done, std::int64_t total) {
  if (!isTerminal_) return;
  const auto now = Clock::now();
  progress_.done = done;
  progress_.total = total;
  const bool isLast = done == total;
  if (drawn_ && !isLast && now - *drawn_ < kBetweenLines) return;
  sample(done, now);
  drawn_ = now;
  draw();
}

void ProgressBar::hide() {
  if (!drawn_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  drawn_.reset();
}

void ProgressBar::sample(std::int64_t done, Clock::time_point now) {
  samples_.emplace_back(now, done);
  while (samples_.size() > 2 && now - samples_.front().first > kSpeedIsMeasuredOver) {
    samples_.pop_front();
  }
  const auto& [then, before] = samples_.front();
  const std::chrono::duration<double> time = now - then;
  if (time.count() > 0) progress_.speed = static_cast<double>(done - before) / time.count();
}

// The last column stays free: some terminals begin a new line when it is written to.
void ProgressBar::draw() {
  const auto text = progressText(progress_, terminalColumns() - 1);
  std::fprintf(stderr, "\r%s\033[K", text.c_str());
  std::fflush(stderr);
}

}  // namespace tqstore
