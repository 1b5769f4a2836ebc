#include "platform/embedded/Foundation/urlsession/Turns.hpp"

#include <algorithm>
#include <utility>

namespace Foundation::detail {

std::vector<Turns::Line>::iterator Turns::find(std::string_view site) {
  return std::find_if(lines_.begin(), lines_.end(),
                      [site](const Line& line) { return line.site == site; });
}

bool Turns::ask(std::string_view site, Transfer& transfer) {
  auto line = find(site);
  if (line == lines_.end()) line = lines_.insert(line, {.site = std::string(site)});
  if (line->speaking == kAtATime) {
    line->waiting.push_back(&transfer);
    return false;
  }
  ++line->speaking;
  return true;
}

void Turns::stopWaiting(std::string_view site, Transfer& transfer) {
  const auto line = find(site);
  if (line != lines_.end()) line->waiting.remove(&transfer);
}

Transfer* Turns::next(std::string_view site) {
  const auto line = find(site);
  if (line == lines_.end()) return nullptr;
  if (!line->waiting.empty()) {
    auto* const transfer = line->waiting.front();
    line->waiting.pop_front();
    return transfer;
  }
  if (--line->speaking == 0) {
    if (&*line != &lines_.back()) *line = std::move(lines_.back());
    lines_.pop_back();
  }
  return nullptr;
}

}  // namespace Foundation::detail
