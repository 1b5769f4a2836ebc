// device refuses: is unavailable
// symbols refuses: bad_any_cast
#include <any>
int probe(const std::any& anything) { return std::any_cast<int>(anything); }
