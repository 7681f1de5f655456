#include <Base/OS/FileStatus.h>

namespace kxOS {

FileStatus::FileStatus() {
    reset();
}

void FileStatus::reset() {
    exists_ = false;
    readable_ = false;
    writable_ = false;
    directory_ = false;
    file_ = false;
    remote_ = false;
    checkedOut_ = false;
    size_ = 0;
    created_ = 0;
    modified_ = 0;
    owner_ = "";
    group_ = "";
}

} // namespace kxOS
