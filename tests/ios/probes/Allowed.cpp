// device accepts
// symbols accepts
// libcxx14 accepts
#include <any>
#include <charconv>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <variant>

int probe(const std::variant<int, std::string>& either, const std::any& anything,
          const std::optional<int>& number, const std::function<int(int)>& function) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  if (const auto* value = std::get_if<int>(&either)) return *value;
  if (const auto* value = std::any_cast<int>(&anything)) return function(*value);
  auto counts = std::make_shared<std::unordered_map<std::string, int>>();
  char text[16];
  const auto end = std::to_chars(text, text + sizeof text, number ? *number : 0).ptr;
  return ++(*counts)[std::string(text, end)];
}
