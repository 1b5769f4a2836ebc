#pragma once

#include <fstream>
#include <string>
#include <utility>

#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>
#endif

namespace tests {

/// A file system of its own, of 256 KiB, on a folder that is there, for as long as this object lives.
/// Only this process sees it. Ask `isThere`: not every machine lets a test do that.
class SmallDisk {
 public:
  explicit SmallDisk(std::string folder) : folder_(std::move(folder)) {
#ifdef __linux__
    isThere_ = hasOwnMounts() &&
               ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=256k") == 0;
#endif
  }

  ~SmallDisk() {
#ifdef __linux__
    if (isThere_) ::umount2(folder_.c_str(), MNT_DETACH);
#endif
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  [[nodiscard]] bool isThere() const { return isThere_; }

 private:
#ifdef __linux__
  // Somebody who is not root becomes the root of a little world of his own.
  static bool hasOwnMounts() {
    const auto user = std::to_string(::geteuid());
    const auto group = std::to_string(::getegid());
    if (::unshare(CLONE_NEWNS) == 0) return true;
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && tell("setgroups", "deny") &&
           tell("uid_map", "0 " + user + " 1") && tell("gid_map", "0 " + group + " 1");
  }
  static bool tell(const std::string& name, const std::string& text) {
    return static_cast<bool>(std::ofstream("/proc/self/" + name) << text << std::flush);
  }
#endif

  std::string folder_;
  bool isThere_ = false;
};

}  // namespace tests
