#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace StoreKit::detail {

/// One value of a JSON text, with its children as the text has them: in order, repeated keys kept.
struct ConfigurationValue {
  struct Member;
  /// Only whole numbers mean something in a configuration file.
  struct Number {
    std::optional<std::int64_t> whole;  ///< absent for a fraction, and for what does not fit
  };
  using Array = std::vector<ConfigurationValue>;
  using Object = std::vector<Member>;

  std::variant<std::monostate, bool, Number, std::string, Array, Object> content;
  /// Counts the values of the text from its front; a container comes before its children.
  std::uint32_t order = 0;

  [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(content); }
};

struct ConfigurationValue::Member {
  std::string key;
  ConfigurationValue value;
};

/// The member of `object` with this key, of several the first; null when there is none or when
/// `object` is no object.
[[nodiscard]] const ConfigurationValue* findMember(const ConfigurationValue& object,
                                                   std::string_view key);

/// The JSON pointer of `target`, which is `root` itself or stands somewhere in it.
[[nodiscard]] std::string pointerTo(const ConfigurationValue& root,
                                    const ConfigurationValue& target);

/// "expected a text, found a list": what a person is told about a value of the wrong kind.
[[nodiscard]] std::string mismatch(std::string_view expected, const ConfigurationValue& found);

}  // namespace StoreKit::detail
