#pragma once

namespace tqstore {

/// Lets the queue carry on with purchases that the user begins in the store itself. The library
/// would refuse them, and they would be lost to the application that they are meant for; so they
/// wait in the ledger as purchased.
void acceptStorePurchases();

/// Answers as told, and shows each question: as a line, or as JSON.
void answerStorePurchases(bool accept, bool json);

}  // namespace tqstore
