// ZRXFileWriter: the one way the library writes a file. Internal, not
// exported; every writer of the library (ZRXMLReadWrite::WriteFromDOM, and
// through it the combiner's export and `zrx combine -o`) goes through it.
//
// A file is replaced, never truncated: the bytes go to a new temporary file
// in the target's folder, which is flushed and synced and then renamed over
// the target, and the folder is synced after the rename. Until the rename the
// target is untouched, so a write that fails at any point (a full disk, a
// file size limit, a failed allocation, an interruption) leaves the file that
// was there exactly as it was, and the temporary file is removed.
//
//  - An existing target that the process may not write is refused, as
//    before: replacing it would need only the folder's permission.
//  - An existing target keeps its permission bits (and, where the process may
//    set them, its owner and group); a new one gets 0666 less the umask, as
//    a file made by fopen.
//  - A target that is a symbolic link (or a chain of them, relative or
//    absolute) is written through: the file it names is replaced and the
//    link stays. A dangling link makes the file it names.
//  - A target that exists and is no regular file (a device such as
//    /dev/null, a FIFO) can't be replaced: it is written in place, as before.
//    A folder is refused.
//  - The target's folder must be writable, also where the target itself is:
//    a file in a read-only folder can't be written any more.
//  - A target with further hard links gets a new file: the other names keep
//    the old content.
//
// Interruption: a host that ends on a signal can remove the temporary files
// of writes in progress from its handler with RemoveUnfinishedFiles
// (ZRXMLReadWrite.h). To make that async-signal-safe, each writer files the
// path of its temporary file in a fixed table of slots before it creates the
// file, and takes it out after the rename (or after removing the file); a
// slot is a lock-free atomic state and a fixed character array, so that the
// handler reads the table without locks or allocation and calls only
// unlink(). A path is filed before its file exists, so no created temporary
// file is ever missing from the table; the handler may try to remove one that
// does not exist yet, or any more, which does no harm (the name is unique in
// the process). A write that finds every slot taken (more than 16 at once in
// one process) or whose temporary path is too long for a slot goes on
// unfiled.
#ifndef ZRPARSEXMLR_ZRXFILEWRITER_H
#define ZRPARSEXMLR_ZRXFILEWRITER_H

#include <xercesc/framework/XMLFormatter.hpp>

#include <cstddef>
#include <string>

namespace ZRXPrsUtil {

class ZRXFileWriter : public xercesc::XMLFormatTarget {
public:
    // Opens the temporary file for `path` (or, for a target that is no
    // regular file, the target itself). IsOpen tells whether that worked.
    // May throw std::bad_alloc; the temporary file is then not made.
    explicit ZRXFileWriter(const std::string& path);
    // Removes the temporary file unless Commit succeeded.
    ~ZRXFileWriter() override;
    ZRXFileWriter(const ZRXFileWriter&) = delete;
    ZRXFileWriter& operator=(const ZRXFileWriter&) = delete;

    bool IsOpen() const { return m_fd >= 0; }

    // The serialiser's pieces, gathered and written in large blocks. A failed
    // write is remembered; what follows it is dropped.
    void writeChars(const XMLByte* const bytes, const XMLSize_t count,
                    xercesc::XMLFormatter* const formatter) override;
    void flush() override;

    // Writes what is pending, syncs and closes the file and renames it over
    // the target, then syncs the folder. False if anything failed on the way
    // (or before); the temporary file is then removed and the target is as
    // it was, except after a failed sync of the folder: the new file is then
    // in place, but may not outlast a crash of the machine.
    bool Commit();

    // The errno of the first failure, 0 if there was none.
    int Error() const { return m_error; }

private:
    void WritePending();
    void Fail(int error);
    void Discard();

    std::string m_target;    // the file that is replaced: the path, links followed
    std::string m_folder;    // of the target; empty when writing in place
    std::string m_temporary; // empty when writing in place
    int m_fd;
    int m_slot; // in the table of unfinished files, -1 if not filed
    int m_error;
    bool m_done;
    std::string m_pending;
};

} // namespace ZRXPrsUtil

#endif
