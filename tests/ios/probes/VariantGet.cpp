// device refuses: 'get<int, int, char>' is unavailable
// symbols refuses: bad_variant_access
#include <variant>
int probe(const std::variant<int, char>& either) { return std::get<int>(either); }
