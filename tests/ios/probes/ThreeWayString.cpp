// device accepts
// libcxx14 refuses: invalid operands to binary expression
#include <compare>
#include <string>
bool probe(const std::string& a, const std::string& b) { return (a <=> b) < 0; }
