#pragma once

namespace tqstore {

/// Answers as told when the queue asks about a purchase that the user began in the store, and shows
/// each question: as a line, or as JSON.
void answerStorePurchases(bool accept, bool json);

}  // namespace tqstore
