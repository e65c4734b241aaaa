#include "ZRXFileWriter.h"

#include <zrparsexmlr/ZRXMLReadWrite.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZRXPrsUtil {

namespace {

const std::size_t kBlock = 1 << 16;

// The table of unfinished files (ZRXFileWriter.h). A slot is free (0), being
// filled (1), holds a path (2), or is read by RemoveUnfinishedFiles (3).
// Constant-initialised, so usable at any time.
enum SlotState { kFree, kFilling, kFiled, kRemoving };
const int kSlots = 16;
struct Slot {
    std::atomic<int> state;
    char path[PATH_MAX];
};
Slot gSlots[kSlots];
static_assert(ATOMIC_INT_LOCK_FREE == 2, "the table is read from signal handlers");

std::atomic<unsigned long> gNames{0};

int File(const std::string& path)
{
    if (path.size() >= PATH_MAX)
        return -1;
    for (int i = 0; i < kSlots; ++i) {
        int expected = kFree;
        if (gSlots[i].state.compare_exchange_strong(expected, kFilling)) {
            std::memcpy(gSlots[i].path, path.c_str(), path.size() + 1);
            gSlots[i].state.store(kFiled);
            return i;
        }
    }
    return -1;
}

void Unfile(int slot)
{
    if (slot < 0)
        return;
    int expected = kFiled;
    // Waits while a handler on another thread reads the slot.
    while (!gSlots[slot].state.compare_exchange_weak(expected, kFree))
        expected = kFiled;
}

// `path` with symbolic links of its last component followed; empty for a
// chain of links that does not end.
std::string FollowLinks(std::string path)
{
    for (int hops = 0; hops < 40; ++hops) {
        struct stat info;
        if (lstat(path.c_str(), &info) != 0 || !S_ISLNK(info.st_mode))
            return path;
        std::string link(PATH_MAX, '\0');
        const ssize_t length = readlink(path.c_str(), &link[0], link.size());
        if (length < 0)
            return path;
        link.resize(static_cast<std::size_t>(length));
        const std::size_t slash = path.rfind('/');
        if (link[0] == '/' || slash == std::string::npos)
            path = link;
        else
            path = path.substr(0, slash + 1) + link;
    }
    return std::string();
}

} // namespace

void RemoveUnfinishedFiles()
{
    for (Slot& slot : gSlots) {
        int expected = kFiled;
        if (slot.state.compare_exchange_strong(expected, kRemoving)) {
            unlink(slot.path);
            slot.state.store(kFiled);
        }
    }
}

ZRXFileWriter::ZRXFileWriter(const std::string& path)
    : m_fd(-1), m_slot(-1), m_error(0), m_done(false)
{
    // Everything that allocates comes before any file is made.
    m_pending.reserve(kBlock);
    if (path.empty()) {
        m_error = ENOENT;
        return;
    }
    m_target = FollowLinks(path);
    if (m_target.empty()) {
        m_error = ELOOP;
        return;
    }
    struct stat info;
    const bool exists = stat(m_target.c_str(), &info) == 0;
    if (exists && S_ISDIR(info.st_mode)) {
        m_error = EISDIR;
        return;
    }
    // A file that the process may not write is not replaced either.
    if (exists && access(m_target.c_str(), W_OK) != 0) {
        m_error = errno;
        return;
    }
    if (exists && !S_ISREG(info.st_mode)) {
        m_fd = open(m_target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        m_error = m_fd < 0 ? errno : 0;
        return;
    }
    const std::size_t slash = m_target.rfind('/');
    m_folder = slash == std::string::npos ? "." : slash == 0 ? "/" : m_target.substr(0, slash);
    const std::string base = m_target.substr(slash == std::string::npos ? 0 : slash + 1);
    const std::string prefix = m_folder + "/." + base.substr(0, 200) + ".tmp" +
                               std::to_string(static_cast<long>(getpid())) + "-";
    for (int attempt = 0; attempt < 100 && m_fd < 0; ++attempt) {
        m_temporary = prefix + std::to_string(++gNames);
        m_slot = File(m_temporary);
        m_fd = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                    exists ? 0600 : 0666);
        if (m_fd < 0) {
            const int error = errno;
            Unfile(m_slot);
            m_slot = -1;
            m_temporary.clear();
            if (error != EEXIST) {
                m_error = error;
                return;
            }
        }
    }
    if (m_fd >= 0 && exists) {
        // The owner and group are kept where the process may set them; the
        // permission bits always.
        if ((info.st_uid != geteuid() || info.st_gid != getegid()) &&
            fchown(m_fd, info.st_uid, info.st_gid) != 0 && fchown(m_fd, -1, info.st_gid) != 0) {
            // Not allowed: the new file has the writer's owner and group.
        }
        if (fchmod(m_fd, info.st_mode & 07777) != 0)
            Fail(errno);
    }
}

ZRXFileWriter::~ZRXFileWriter()
{
    if (!m_done)
        Discard();
}

void ZRXFileWriter::Fail(int error)
{
    if (m_error == 0)
        m_error = error != 0 ? error : EIO;
}

void ZRXFileWriter::writeChars(const XMLByte* const bytes, const XMLSize_t count,
                               xercesc::XMLFormatter* const)
{
    if (m_fd < 0 || m_error != 0)
        return;
    // The buffer never grows beyond its first size, so a write allocates
    // nothing.
    if (count > m_pending.capacity() - m_pending.size())
        WritePending();
    if (count >= m_pending.capacity()) {
        const char* data = reinterpret_cast<const char*>(bytes);
        for (std::size_t left = count; left > 0 && m_error == 0;) {
            const ssize_t written = write(m_fd, data, left);
            if (written < 0 && errno != EINTR)
                Fail(errno);
            else if (written > 0)
                data += written, left -= static_cast<std::size_t>(written);
        }
        return;
    }
    m_pending.append(reinterpret_cast<const char*>(bytes), count);
}

void ZRXFileWriter::flush()
{
    WritePending();
}

void ZRXFileWriter::WritePending()
{
    const char* data = m_pending.data();
    for (std::size_t left = m_pending.size(); left > 0 && m_fd >= 0 && m_error == 0;) {
        const ssize_t written = write(m_fd, data, left);
        if (written < 0 && errno != EINTR)
            Fail(errno);
        else if (written > 0)
            data += written, left -= static_cast<std::size_t>(written);
    }
    m_pending.clear();
}

bool ZRXFileWriter::Commit()
{
    if (m_done)
        return m_error == 0;
    WritePending();
    if (m_fd < 0) {
        Fail(EBADF);
        Discard();
        return false;
    }
    // A file written in place (a device, a FIFO) can't be synced.
    if (m_error == 0 && !m_temporary.empty() && fsync(m_fd) != 0)
        Fail(errno);
    if (close(m_fd) != 0)
        Fail(errno);
    m_fd = -1;
    if (m_error == 0 && !m_temporary.empty() && rename(m_temporary.c_str(), m_target.c_str()) != 0)
        Fail(errno);
    if (m_error != 0) {
        Discard();
        return false;
    }
    Unfile(m_slot);
    m_slot = -1;
    m_done = true;
    if (!m_temporary.empty()) {
        // The rename itself reaches the disk with the folder. A file system
        // that can't sync a folder says so with EINVAL.
        const int folder = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            if (fsync(folder) != 0 && errno != EINVAL)
                Fail(errno);
            close(folder);
        }
    }
    return m_error == 0;
}

void ZRXFileWriter::Discard()
{
    if (m_fd >= 0)
        close(m_fd);
    m_fd = -1;
    if (!m_temporary.empty())
        unlink(m_temporary.c_str());
    Unfile(m_slot);
    m_slot = -1;
    m_done = true;
}

} // namespace ZRXPrsUtil
