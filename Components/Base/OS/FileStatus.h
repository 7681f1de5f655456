// kxOS::FileStatus: what the file system says about a path.
//
// A plain value: flags, size, dates in seconds since 1970-01-01 UTC, and
// the names of the owner and group. A default status, and one whose query
// failed, has every flag false, size and dates 0, and empty names.
#pragma once

#include <Base/String/CString.h>
#include <Base/Utility/Api.h>

#include <cstdint>

namespace kxOS {

class BASE_API FileStatus {
public:
    FileStatus();

    /// Every flag false, size and dates 0, names empty.
    void reset();

    bool exists() const { return exists_; }
    bool isReadable() const { return readable_; }
    bool isWritable() const { return writable_; }
    bool isDirectory() const { return directory_; }
    bool isFile() const { return file_; }
    /// It lies on a network file system.
    bool isRemote() const { return remote_; }
    /// It is checked out of a version store (never, for local files).
    bool isCheckedout() const { return checkedOut_; }
    long getSize() const { return size_; }
    std::int64_t getCreationDate() const { return created_; }
    std::int64_t getLastModifiedDate() const { return modified_; }
    const kxString::CString& getOwner() const { return owner_; }
    const kxString::CString& getGroup() const { return group_; }

    void setExists(bool value) { exists_ = value; }
    void setIsReadable(bool value) { readable_ = value; }
    void setIsWritable(bool value) { writable_ = value; }
    void setIsDirectory(bool value) { directory_ = value; }
    void setIsFile(bool value) { file_ = value; }
    void setIsRemote(bool value) { remote_ = value; }
    void setIsCheckedout(bool value) { checkedOut_ = value; }
    void setSize(long value) { size_ = value; }
    void setCreationDate(std::int64_t value) { created_ = value; }
    void setLastModification(std::int64_t value) { modified_ = value; }
    void setOwner(const kxString::CString& value) { owner_ = value; }
    void setGroup(const kxString::CString& value) { group_ = value; }

private:
    bool exists_;
    bool readable_;
    bool writable_;
    bool directory_;
    bool file_;
    bool remote_;
    bool checkedOut_;
    long size_;
    std::int64_t created_;
    std::int64_t modified_;
    kxString::CString owner_;
    kxString::CString group_;
};

} // namespace kxOS
