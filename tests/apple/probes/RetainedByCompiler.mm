// flags: -fobjc-arc
// refuses: compile it without -fobjc-arc
#include "platform/apple/Retained.hpp"
