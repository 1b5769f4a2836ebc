// Included before every Objective-C++ source of the run check: the Foundation that there is, and the
// doubles of what it lacks.
#pragma once

#import <Foundation/Foundation.h>
#import <dispatch/dispatch.h>

#import "tests/apple/doubles/FoundationCompletions.h"
#include "tests/apple/doubles/SystemVersion.hpp"
#import "tests/apple/doubles/URLLoading.h"
