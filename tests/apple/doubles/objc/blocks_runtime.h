// The header under which the Objective-C compiler expects what <Block.h> declares.
#pragma once
#include <Block.h>
