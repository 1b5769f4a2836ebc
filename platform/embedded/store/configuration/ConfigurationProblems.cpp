#include "platform/embedded/store/configuration/ConfigurationProblems.hpp"

#include <algorithm>
#include <utility>

namespace StoreKit::detail {

namespace {

bool isInsideCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

bool isControl(char byte) { return static_cast<unsigned char>(byte) < 0x20U || byte == 0x7F; }

}  // namespace

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  std::size_t length = std::min(text.size(), kLongest);
  while (length < text.size() && length > 0 && isInsideCharacter(text[length])) --length;
  std::string result = "\"" + std::string(text.substr(0, length));
  std::replace_if(result.begin(), result.end(), isControl, '?');
  return result + (length < text.size() ? "...\"" : "\"");
}

void ConfigurationProblems::warn(const ConfigurationValue& at, std::string message) {
  add(ConfigurationProblem::Severity::warning, at, std::move(message));
}

void ConfigurationProblems::refuse(const ConfigurationValue& at, std::string message) {
  refused_.insert(at.order);
  add(ConfigurationProblem::Severity::error, at, std::move(message));
}

void ConfigurationProblems::add(ConfigurationProblem::Severity severity,
                                const ConfigurationValue& at, std::string message) {
  found_.emplace(at.order, ConfigurationProblem{severity, file_, pointer(at), std::move(message)});
}

std::string ConfigurationProblems::pointer(const ConfigurationValue& at) const {
  return pointerTo(root_, at);
}

std::vector<ConfigurationProblem> ConfigurationProblems::take() {
  std::vector<ConfigurationProblem> problems;
  for (auto& [order, problem] : std::exchange(found_, {})) {
    const bool isReason = problem.severity == ConfigurationProblem::Severity::error;
    if (isReason || !refused_.contains(order)) problems.push_back(std::move(problem));
  }
  return problems;
}

}  // namespace StoreKit::detail
