#pragma once

#include <functional>
#include <string>

/// An application's shop, in C++ and nothing else: the same source runs on a desk, with the
/// embedded store, and on an iPhone.
///
/// Make one at launch and keep it. All of it on the main thread.
class PurchaseFlow {
 public:
  /// Shows the user a line of text.
  using Screen = std::function<void(const std::string& line)>;

  /// Delivers what earlier runs paid for and did not get.
  explicit PurchaseFlow(Screen screen);

  void buy(const std::string& productId);
  void restore();

 private:
  Screen screen_;
};
