// refuses: 'value' is unavailable
#include <optional>
int probe(const std::optional<int>& number) { return number.value(); }
