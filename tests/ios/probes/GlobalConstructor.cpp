// device refuses: -Wglobal-constructors
#include <string>
std::string probe(100, ' ');
