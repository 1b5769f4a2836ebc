// device refuses: is unavailable
// symbols refuses: atomic_wait
#include <atomic>
void probe(std::atomic<int>& number) { number.wait(0); }
