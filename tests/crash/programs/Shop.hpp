#pragma once

#include <cstdint>

#include "tests/fakes/ShopConfigurations.hpp"

namespace crash {

/// A period of the subscription, and how much faster than the world's the clock of the programs
/// goes: ten periods a second.
constexpr int kPeriodsOfTwoSeconds = 1005;
constexpr double kClockSpeed = 20;

/// The shop of the tests, whose subscription is renewed while a program lives.
inline StoreKit::StoreConfiguration fastShop() {
  auto configuration = tests::shop();
  configuration.settings.timeRate = kPeriodsOfTwoSeconds;
  return configuration;
}

}  // namespace crash
