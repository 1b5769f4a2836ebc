#include "benchmarks/BareLoader.hpp"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace bare {

Worker::Worker() : thread_([this] { run(); }) {}

Worker::~Worker() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void Worker::hand(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    works_.push_back(std::move(work));
  }
  changed_.notify_one();
}

void Worker::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ending_ || !works_.empty(); });
    if (works_.empty()) return;
    const auto work = std::move(works_.front());
    works_.pop_front();
    lock.unlock();
    work();
    lock.lock();
  }
}

struct Loader::Transfer {
  explicit Transfer(CURLSH* share) : easy(curl_easy_init()) {
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT, 60L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "TQStoreKitLib");
    curl_easy_setopt(easy, CURLOPT_SHARE, share);
    curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, take);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHead);
  }
  ~Transfer() { curl_easy_cleanup(easy); }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  static std::size_t take(char* bytes, std::size_t, std::size_t size, void* self) {
    static_cast<Transfer*>(self)->body.append(bytes, size);
    return size;
  }
  static std::size_t takeHead(char* line, std::size_t, std::size_t size, void* self) {
    static_cast<Transfer*>(self)->head.append(line, size);
    return size;
  }

  CURL* easy;
  std::string head;
  std::string body;
  Done done;
};

Loader::Loader(Worker* worker)
    : worker_(worker), share_(curl_share_init()), multi_(curl_multi_init()) {
  curl_share_setopt(share_, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
  thread_ = std::thread([this] { run(); });
}

Loader::~Loader() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  curl_multi_wakeup(multi_);
  thread_.join();
  spare_.clear();
  curl_multi_cleanup(multi_);
  curl_share_cleanup(share_);
}

void Loader::load(const std::string& url, Done done) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.emplace_back(url, std::move(done));
  }
  curl_multi_wakeup(multi_);
}

void Loader::run() {
  for (;;) {
    {
      const std::lock_guard lock(mutex_);
      if (ending_) return;
    }
    startAll();
    int running = 0;
    curl_multi_perform(multi_, &running);
    endAll();
    curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
  }
}

void Loader::startAll() {
  std::vector<std::pair<std::string, Done>> waiting;
  {
    const std::lock_guard lock(mutex_);
    waiting.swap(waiting_);
  }
  for (auto& [url, done] : waiting) {
    if (spare_.empty()) spare_.push_back(std::make_unique<Transfer>(share_));
    auto* const transfer = spare_.back().release();
    spare_.pop_back();
    transfer->head.clear();
    transfer->body.clear();
    transfer->done = std::move(done);
    curl_easy_setopt(transfer->easy, CURLOPT_URL, url.c_str());
    curl_multi_add_handle(multi_, transfer->easy);
  }
}

void Loader::endAll() {
  int left = 0;
  while (const auto* message = curl_multi_info_read(multi_, &left)) {
    char* found = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &found);
    std::unique_ptr<Transfer> transfer(reinterpret_cast<Transfer*>(found));
    curl_multi_remove_handle(multi_, transfer->easy);
    if (worker_ != nullptr) {
      worker_->hand(
          [done = std::move(transfer->done), body = std::move(transfer->body)] { done(body); });
    } else {
      std::exchange(transfer->done, nullptr)(transfer->body);
    }
    spare_.push_back(std::move(transfer));
  }
}

void downloadToATemporaryFile(const std::string& url) {
  static CURL* const easy = curl_easy_init();
  std::FILE* const file = std::tmpfile();
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, file);
  if (curl_easy_perform(easy) != CURLE_OK) std::abort();
  std::fclose(file);
}

}  // namespace bare
