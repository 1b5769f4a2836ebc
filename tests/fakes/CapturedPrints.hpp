#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "tests/fakes/Journal.hpp"

namespace TQStoreKitLib::tests {

/// Catches what the library prints, as long as it lives.
class CapturedPrints {
 public:
  explicit CapturedPrints(JournalPtr sharedJournal = aJournal())
      : journal_(std::move(sharedJournal)) {
    Foundation::setPrintHandler(
        [journal = journal_](std::string_view message) { journal->emplace_back(message); });
  }
  ~CapturedPrints() { Foundation::setPrintHandler(nullptr); }
  CapturedPrints(const CapturedPrints&) = delete;
  CapturedPrints& operator=(const CapturedPrints&) = delete;

  [[nodiscard]] const Journal& lines() const { return *journal_; }

 private:
  JournalPtr journal_;
};

}  // namespace TQStoreKitLib::tests
