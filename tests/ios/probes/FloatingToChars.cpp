// device refuses: is unavailable
// symbols refuses: 8to_charsEPcS0_d
#include <charconv>
char* probe(char* first, char* last) { return std::to_chars(first, last, 0.5).ptr; }
