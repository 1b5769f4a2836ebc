#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using namespace std::chrono_literals;
using tests::OpenShop;
using tests::RecordingDelegate;

// Ends the loop at its end, wherever that is, and says where.
class LeavingDelegate final : public SKProductsRequestDelegate {
 public:
  explicit LeavingDelegate(std::thread::id& destroyedOn) : destroyedOn_(destroyedOn) {}
  ~LeavingDelegate() override {
    destroyedOn_ = std::this_thread::get_id();
    Dispatch::MainLoop::stop();
  }
  std::function<void()> onAnswer;

  void productsRequestDidReceiveResponse(const SKProductsResponse&) override { onAnswer(); }
  void requestDidFailWithError(const Foundation::NSError&) override { onAnswer(); }

 private:
  std::thread::id& destroyedOn_;
};

class ProductsRequestThreads : public testing::Test {
 protected:
  OpenShop shop;

  ProductsRequestThreads() { shop.session.setAnswersProductsInBackground(true); }

  // The thread that an answer comes on.
  std::thread::id answeredOn() const {
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onAnswer = [] { Dispatch::mainQueue().async(Dispatch::MainLoop::stop); };
    SKProductsRequest request({"gems"});
    request.setDelegate(delegate);
    request.start();
    Dispatch::MainLoop::runFor(30s);
    EXPECT_EQ(delegate->answers(), 1U);
    return delegate->thread;
  }
};

TEST_F(ProductsRequestThreads, AnswerComesOnAnotherThreadWhenToldSo) {
  EXPECT_NE(answeredOn(), std::this_thread::get_id());
}

TEST_F(ProductsRequestThreads, FailureComesOnAnotherThreadWhenToldSo) {
  shop.session.failProductsRequests(Foundation::NSError("network", -1009));
  EXPECT_NE(answeredOn(), std::this_thread::get_id());
}

TEST_F(ProductsRequestThreads, AnswerComesOnTheMainThreadAsARule) {
  shop.session.setAnswersProductsInBackground(false);
  EXPECT_EQ(answeredOn(), std::this_thread::get_id());
}

TEST_F(ProductsRequestThreads, LastReferenceToTheDelegateIsLetGoOnTheMainThread) {
  std::thread::id destroyedOn;
  std::atomic<bool> answered = false;
  auto delegate = std::make_shared<LeavingDelegate>(destroyedOn);
  delegate->onAnswer = [&] {
    delegate.reset();
    answered = true;
  };
  SKProductsRequest request({"gems"});
  request.setDelegate(delegate);
  request.start();
  Dispatch::MainLoop::runFor(30s);
  EXPECT_TRUE(answered);
  EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

TEST_F(ProductsRequestThreads, RequestsMayGoWhileTheirAnswersAreUnderWay) {
  const auto delegate = std::make_shared<RecordingDelegate>();
  for (int i = 0; i < 100; ++i) {
    SKProductsRequest request({"gems"});
    request.setDelegate(std::make_shared<RecordingDelegate>());
    request.start();
    tests::turn();
  }
  EXPECT_TRUE(tests::turnUntilIdle());
}

TEST_F(ProductsRequestThreads, ManyAnswersAreUnderWayAtOnce) {
  constexpr std::size_t kRequests = 20;
  std::atomic<std::size_t> answered = 0;
  std::vector<std::shared_ptr<RecordingDelegate>> delegates;
  std::vector<std::unique_ptr<SKProductsRequest>> requests;
  for (std::size_t i = 0; i < kRequests; ++i) {
    delegates.push_back(std::make_shared<RecordingDelegate>());
    delegates.back()->onAnswer = [&] {
      if (++answered == kRequests) Dispatch::mainQueue().async(Dispatch::MainLoop::stop);
    };
    requests.push_back(std::make_unique<SKProductsRequest>(std::set<std::string>{"gems"}));
    requests.back()->setDelegate(delegates.back());
    requests.back()->start();
  }
  Dispatch::MainLoop::runFor(30s);
  EXPECT_EQ(answered, kRequests);
}

TEST(PaymentQueueThreads, UseOnAnotherThreadIsSaidInADebugBuild) {
  const OpenShop shop;
  tests::turn();
  tests::CapturedError error;
  std::thread([] { (void)SKPaymentQueue::defaultQueue().transactions(); }).join();
#ifdef NDEBUG
  EXPECT_EQ(error.text(), "");
#else
  EXPECT_EQ(error.text(), "The payment queue was used on a thread that is not the main one.\n");
#endif
}

}  // namespace
}  // namespace StoreKit
