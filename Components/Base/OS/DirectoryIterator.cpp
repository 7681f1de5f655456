#include <Base/OS/DirectoryIterator.h>

#include <Base/Containers/Vector.h>
#include <Base/OS/File.h>
#include <Base/OS/FileStatus.h>

namespace kxOS {
namespace {

using kxString::IString;

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

// A listing's own "." and ".." entries: "x\." or "x/..".
bool isDotEntry(const IString& path) {
    const unsigned int n = path.length();
    if (n <= 3 || path[n - 1] != L'.')
        return false;
    if (isSeparator(path[n - 2]))
        return true;
    return path[n - 2] == L'.' && isSeparator(path[n - 3]);
}

} // namespace

DirectoryIterator::iteratorEntry::iteratorEntry(const IString& text)
    : path(text), valid(false), directory(false), pruned(false) {
    FileStatus status;
    valid = !File::query(path, status) && status.exists();
    directory = status.isDirectory();
}

DirectoryIterator::DirectoryIterator(const IString& root) {
    IString path = root;
    while (path.length() > 1 && isSeparator(path[path.length() - 1]))
        path.erase(path.length() - 1);
    iteratorEntry entry(path);
    if (entry.valid)
        queue_.push_back(std::move(entry));
}

DirectoryIterator::~DirectoryIterator() = default;

const IString& DirectoryIterator::getName() const {
    static const IString none;
    return valid() ? queue_.front().path : none;
}

bool DirectoryIterator::onDirectory() const {
    return valid() && queue_.front().directory;
}

void DirectoryIterator::prune() {
    if (valid())
        queue_.front().pruned = true;
}

void DirectoryIterator::next() {
    if (!valid())
        return;
    const iteratorEntry& current = queue_.front();
    if (current.directory && !current.pruned) {
        kx::vector<IString> paths;
        File(current.path).readDir(paths); // an unreadable directory has no entries
        for (const IString& path : paths) {
            if (isDotEntry(path))
                continue;
            iteratorEntry entry(path);
            if (entry.valid)
                queue_.push_back(std::move(entry));
        }
    }
    queue_.pop_front();
}

} // namespace kxOS
