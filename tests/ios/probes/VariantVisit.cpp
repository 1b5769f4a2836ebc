// device refuses: is unavailable
// symbols refuses: bad_variant_access
#include <variant>
int probe(const std::variant<int, char>& either) {
  return std::visit([](auto value) { return int{value}; }, either);
}
