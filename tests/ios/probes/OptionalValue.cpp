// device refuses: 'value' is unavailable
// symbols refuses: bad_optional_access
#include <optional>
int probe(std::optional<int> number) { return number.value(); }
