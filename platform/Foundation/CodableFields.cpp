#include "platform/Foundation/CodableFields.hpp"

namespace Foundation {

namespace {

constexpr std::size_t kFirstMembers = 64;

}  // namespace

FieldDecoder::FieldDecoder(Decoder& decoder) : decoder_(decoder), isAtField_(decoder.nextField()) {}

bool FieldDecoder::beginPass() {
  if (decoder_.hasFailed() || isLastPass_) return false;
  if (isAtField_ && !isFirstPass_ && takenCount_ == takenBefore_) {
    decoder_.skip();
    isAtField_ = decoder_.nextField();
  }
  isFirstPass_ = false;
  isLastPass_ = !isAtField_;
  takenBefore_ = takenCount_;
  member_ = 0;
  return !decoder_.hasFailed();
}

void FieldDecoder::markTaken(std::size_t index) {
  ++takenCount_;
  if (index < kFirstMembers) {
    taken_ |= std::uint64_t{1} << index;
  } else {
    if (takenBeyond_.size() <= index) takenBeyond_.resize(index + 1);
    takenBeyond_[index] = true;
  }
}

bool FieldDecoder::wasTaken(std::size_t index) const {
  if (index < kFirstMembers) return (taken_ >> index & 1U) != 0;
  return index < takenBeyond_.size() && takenBeyond_[index];
}

}  // namespace Foundation
