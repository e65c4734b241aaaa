// ZRXMLReadWrite: the general way in and out of a DOM. It parses one document
// at a time from a file or a stream, keeps it, and writes any DOM to a file.
// The split-model combiner reads every model and writes its result with it.
//
// Life of the XML library: the constructor takes one share of the XML
// library's start (the first share of the process starts it) and the
// destructor gives it back (the last share ends it), after freeing the parser.
// Documents that came from an object must not be used after its destruction.
//
// Threads: as for every object of the library (zrparsexmlr.h).
//
// Paths are local file names: a path is opened as a file on this machine and
// never taken for a URL ("http://host/x" is the relative path "http:/host/x",
// which is not found: 104), so no operation opens a network connection.
// Entity references are read as their text: a parsed document holds no entity
// reference node. A document nested deeper than 2,000 elements (the document
// element is level 1) is refused with 104: the XML library's serialiser
// recurses once per level, and at 2,000 levels every operation runs on a
// thread with a 1 MiB stack.
//
// States: not initialised (status 103 for good: every parse and write returns
// 103 and does nothing), empty (no document) and holding (after a successful
// parse). A successful ParseToDOM moves to holding, a failed one to empty; the
// previous document is freed at the start of every parse, so a pointer that
// GetDocument gave goes stale at the next ParseToDOM, whatever its outcome.
//
// Failures:
//   103  the XML library can't be started (then for good), or a parser can't
//        be made (only that parse; the next one tries again);
//   104  the document can't be parsed: any failure of the parse, not only an
//        XMLException. A document that is not well-formed, a DOCTYPE that
//        asks for external entities, a missing file all give 104 and never an
//        exception; GetXercesMessage tells the cause where the XML library
//        gave one;
//   118  the document can't be written: the file can't be made, a write,
//        the sync or the closing of the file or its rename fails, or the
//        serialiser refuses the document. No exception leaves WriteFromDOM.
// A failed allocation gives 103 in the constructor, 104 in ParseToDOM and 118
// in WriteFromDOM, and the object stays usable: no exception leaves any
// operation, and the same call made again works.
// A following successful parse or write empties GetXercesMessage.
#ifndef ZRPARSEXMLR_ZRXMLREADWRITE_H
#define ZRPARSEXMLR_ZRXMLREADWRITE_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXPlatformShare.h>
#include <zrparsexmlr/ZRXercesFwd.h>
#include <zrcommonr/ZRStatus.h>

#include <istream>
#include <string>

namespace ZRXPrsUtil {

class ZRXPRS_API ZRXMLReadWrite {
public:
    ZRXMLReadWrite();
    ~ZRXMLReadWrite();
    ZRXMLReadWrite(const ZRXMLReadWrite&) = delete;
    ZRXMLReadWrite& operator=(const ZRXMLReadWrite&) = delete;

    // The result of construction; it never changes afterwards.
    ZRCommon::ZRStatus GetInitStatus() const;

    // Parses the local file at `path`, opened as a file and read as a stream;
    // a path that can't be opened as a file gives 104.
    ZRCommon::ZRStatus ParseToDOM(const std::string& path);
    // Parses the stream, read to its end.
    ZRCommon::ZRStatus ParseToDOM(std::istream& stream);

    // Writes `document`, or the object's own if it is null, to the file at
    // `path` without pretty-printing. With no document at all the result is
    // OK and no file is touched. Changes neither the held parser nor the held
    // document, so it writes documents of other owners too.
    // The serialiser takes about 128 bytes of stack per level: a document that
    // did not come from a parser of this library (which refuses more than
    // 2,000 levels) must fit the caller's stack.
    //
    // The file is replaced, never truncated: the document goes to a new
    // temporary file in the same folder, which is synced and renamed over
    // `path` only once the whole document is in it; the folder is synced
    // after the rename. A write that fails for any reason (a full disk, a file
    // size limit, a failed allocation) gives 118 and leaves the file that was
    // at `path` exactly as it was, and removes the temporary file. This
    // departs from writing through a file target made on the path itself,
    // which truncates the old file first, so that a failure half-way lost a
    // good document and left a cut one in its place. An existing file keeps
    // its permission bits; a symbolic link is written through (the file it
    // names is replaced, the link stays); a target that is no regular file
    // (/dev/null, a FIFO) is written in place; the folder must be writable.
    // After a 118 GetXercesMessage names the path and the system's reason
    // where the XML library gave no message.
    ZRCommon::ZRStatus WriteFromDOM(const std::string& path,
                                    const xercesc::DOMDocument* document = nullptr) const;

    // The XML library's message on the last parse or write, as UTF-8: that
    // of the exception that ended it, or for a parse the first error that the
    // XML library reported; empty if there was none.
    std::string GetXercesMessage() const;

    // The held document, null before any parse and after a failed one. The
    // object keeps it.
    const xercesc::DOMDocument* GetDocument() const;
    xercesc::DOMDocument* GetDocument();

private:
    ZRCommon::ZRStatus ParseToDOM(const char* path, std::istream* stream);
    void DropParser();

    // First, so that it is given back after everything made with the XML library.
    ZRXPlatformShare share;
    ZRCommon::ZRStatus status;
    xercesc::XercesDOMParser* parser;
    mutable std::string xercesMessage;
    xercesc::DOMDocument* document;
};

// Removes the temporary file of every write of this library that is in
// progress in the process (WriteFromDOM, and through it the combiner's
// ExportMiningModel). Async-signal-safe: it reads a fixed table without locks
// and calls unlink() alone, so a host may call it from its handler of SIGINT
// or SIGTERM before it ends, and no half-written temporary file stays
// behind. The files that those writes were to replace are untouched. A write
// that goes on after the call fails with 118.
ZRXPRS_API void RemoveUnfinishedFiles();

} // namespace ZRXPrsUtil

#endif
