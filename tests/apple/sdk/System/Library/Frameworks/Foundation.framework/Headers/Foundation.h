// What platform/apple uses of the framework, declared in our own words: enough to compile and link
// against, no more. What is newer than iOS 11.2 carries its version; what carries none is older.

#pragma once

#import <Foundation/Application.h>
#import <Foundation/Basics.h>
#import <Foundation/Collections.h>
#import <Foundation/Errors.h>
#import <Foundation/Files.h>
#import <Foundation/Formatters.h>
#import <Foundation/Services.h>
#import <Foundation/URLLoading.h>
#import <Foundation/Values.h>
