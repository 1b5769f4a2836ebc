#pragma once

#include <string>

#include "platform/Foundation/Date.hpp"
#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"

namespace StoreKit {

/// How fast the time of subscriptions goes by: the numbers of the platform's test sessions, with the
/// lengths that its documentation gives for them (a week is not the quarter of a month there).
///
///     0            real time: calendar months, in UTC
///     1 to 6       a day is an hour, 30, 5, 1 minutes, 30, 1 seconds
///     10 to 13, 15 a month is an hour, 30, 15, 5 minutes, 30 seconds
///     1000 to 1005 every period is 15, 5, 1 minutes, 30, 10, 2 seconds
///
/// The rates of days count 7 to a week, 30 to a month and 365 to a year.

[[nodiscard]] bool isTimeRate(int rate);
/// All of them, with commas, for a message.
[[nodiscard]] std::string timeRates();

/// When a period that begins at `begin` ends. A rate that is none counts as real time, a length of
/// no units as one.
[[nodiscard]] Foundation::Date periodEnd(Foundation::Date begin,
                                         const SKProductSubscriptionPeriod& period, int rate);

/// How long a renewal that could not be paid leaves the subscription as it is.
[[nodiscard]] double graceSeconds(const SKProductSubscriptionPeriod& period, int rate);

/// How long a renewal that could not be paid is tried again.
[[nodiscard]] double retrySeconds(int rate);

}  // namespace StoreKit
