// kxOS::DirectoryIterator: a breadth-first walk of a directory tree.
//
// The root comes first, then its entries, then theirs, each directory's in
// the order of its listing (sorted by name). "." and ".." are never
// visited. prune() keeps the walk out of the current directory.
//
//     for (kxOS::DirectoryIterator it(L"/data"); it.valid(); it.next()) {
//         if (it.onDirectory() && skip(it.getName()))
//             it.prune();
//         ...
//     }
//
// Entries are full paths built from the root's text. A directory that
// cannot be listed simply has no entries. A walk follows symbolic links to
// directories; a link that leads back up ends when the system stops
// resolving the growing path.
#pragma once

#include <Base/Containers/List.h>
#include <Base/String/IString.h>
#include <Base/Utility/Api.h>

namespace kxOS {

class BASE_API DirectoryIterator {
public:
    struct iteratorEntry {
        /// Queries the status of `path`.
        explicit iteratorEntry(const kxString::IString& path);

        kxString::IString path;
        bool valid;     ///< the status query succeeded and the path exists
        bool directory; ///< it is a directory
        bool pruned;    ///< next() does not list it
    };

    /// Starts at `root`, trailing separators removed; not valid when the
    /// root does not exist.
    explicit DirectoryIterator(const kxString::IString& root);
    virtual ~DirectoryIterator();

    /// There is a current entry.
    bool valid() const { return !queue_.empty(); }
    /// The current entry's path; "" when the walk is over.
    const kxString::IString& getName() const;
    bool onDirectory() const;
    /// Anything that is not a directory counts as a file.
    bool onFile() const { return valid() && !onDirectory(); }
    /// Keeps next() from listing the current directory.
    void prune();
    /// Queues the current directory's entries unless it was pruned, and
    /// moves on. Does nothing when the walk is over.
    void next();

private:
    kx::list<iteratorEntry> queue_;
};

} // namespace kxOS
