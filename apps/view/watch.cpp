// Compares a file's stamp with the one last seen; no notification service is needed.
#include "apps/view/watch.h"

#include <sys/stat.h>

namespace kv {

File_Watch::File_Watch(const std::string& path) : path_(path), told_(stamp()), last_(told_) {}

File_Watch::Stamp File_Watch::stamp() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0 || status.st_size == 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

bool File_Watch::changed() {
  const Stamp now = stamp();
  const bool settled = now == last_ && now != Stamp{};
  last_ = now;
  if (!settled || now == told_) return false;
  told_ = now;
  return true;
}

}  // namespace kv
