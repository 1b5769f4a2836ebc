#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/embedded/store/StoreConfiguration.hpp"
#include "platform/embedded/store/configuration/ConfigurationValue.hpp"

namespace StoreKit::detail {

/// A text of the file as a message shows it: in quotes, shortened, without control characters.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// Collects what is odd about one configuration file while it is read.
///
/// Refers to the tree `root`, which must outlive it.
class ConfigurationProblems {
 public:
  ConfigurationProblems(std::string file, const ConfigurationValue& root)
      : file_(std::move(file)), root_(root) {}

  void warn(const ConfigurationValue& at, std::string message);
  /// Refuses the file.
  void refuse(const ConfigurationValue& at, std::string message);

  [[nodiscard]] bool refused() const { return !refused_.empty(); }
  /// Whether that very value is a reason.
  [[nodiscard]] bool refused(const ConfigurationValue& at) const {
    return refused_.contains(at.order);
  }
  [[nodiscard]] std::string pointer(const ConfigurationValue& at) const;

  /// Everything in the order of the file, whatever the order it was found in. Of a value for which
  /// the file is refused only that is said, and not what it would be read as.
  [[nodiscard]] std::vector<ConfigurationProblem> take();

 private:
  void add(ConfigurationProblem::Severity severity, const ConfigurationValue& at,
           std::string message);

  std::string file_;
  const ConfigurationValue& root_;
  std::multimap<std::uint32_t, ConfigurationProblem> found_;  // by the order of their values
  std::set<std::uint32_t> refused_;  // the orders of the values that are the reasons
};

}  // namespace StoreKit::detail
