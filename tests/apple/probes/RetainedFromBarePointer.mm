// refuses: no viable conversion from returned value of type 'NSString *' to function return type 'Foundation::Retained<NSString *>'
#include "platform/apple/Retained.hpp"
Foundation::Retained<NSString*> probe(NSString* text) { return text; }
