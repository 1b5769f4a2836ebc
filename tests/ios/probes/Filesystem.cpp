// device refuses: is unavailable
// symbols refuses: 4__fs10filesystem
#include <filesystem>
bool probe(const char* name) { return std::filesystem::exists(name); }
