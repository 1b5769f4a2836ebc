#pragma once

#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace Foundation::detail {

class Transfer;

/// Lets at most six transfers at a time speak to a site, as "http://host:80"; the others wait, in
/// their order. libcurl could make them wait as well, but does most of a request's work before it
/// finds out, and again afterwards.
class Turns {
 public:
  static constexpr int kAtATime = 6;

  /// True when `transfer` may speak now; else it waits.
  [[nodiscard]] bool ask(std::string_view site, Transfer& transfer);
  /// One that waits does not want to any more.
  void stopWaiting(std::string_view site, Transfer& transfer);
  /// One that spoke is done. Who may speak now, if anybody.
  [[nodiscard]] Transfer* next(std::string_view site);

 private:
  struct Line {
    std::string site;
    int speaking = 0;
    std::list<Transfer*> waiting{};
  };
  std::vector<Line>::iterator find(std::string_view site);

  std::vector<Line> lines_;  // of the sites that somebody speaks to: few
};

}  // namespace Foundation::detail
