// device accepts
// libcxx14 refuses: in namespace 'std::ranges'
#include <algorithm>
#include <vector>
void probe(std::vector<int>& numbers) { std::ranges::sort(numbers); }
