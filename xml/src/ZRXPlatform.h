// ZRXPlatform: the one owner of the XML library's life inside this library.
// Internal, not exported.
//
// Xerces-C must be started (XMLPlatformUtils::Initialize) before any of its
// objects is made and ended (Terminate) after the last one is gone. It counts
// its starts itself, but neither call is safe when two threads make it at
// once: one thread's Terminate would end the library under another thread's
// parse. Every object of this library that needs the XML library therefore
// holds a share (ZRXPlatformShare, its first member) and only this file calls
// Initialize and Terminate. A program that uses the XML library beside this
// one holds a ZRXPlatformShare too (zrx validate does, for its schema
// validation), so that its start and end go through the same count.
//
// This is the library's one lock beside the one that guards the creation of
// the default converter of the encoding services; everything else takes
// none. It is taken only when an object starts or ends (never during a parse,
// a query or a write), so that objects on different threads can live side by
// side; the rule for users stays that any number of objects may be used at
// once, each by one thread at a time.
//
// Rule for callers: every object of the XML library that a holder made
// (parsers, documents, serialisers, transcoders) must be destroyed before the
// holder's Release.
//
// A failed start. The XML library is started with a panic handler that
// throws instead of the library's default one, which prints "Unknown reason"
// and ends the process with exit(): a start that fails (memory runs out in
// it, or the transcoding service can't be made) thus gives 103 to the object
// that asked, and the host process goes on. This departs from starting the
// XML library with no panic handler of our own. The XML library can't be
// started again in that process, though: Initialize counts the start as done
// before it does anything, keeps what it made up to the failure, and its
// Terminate, which would take that down and reset the count, dereferences
// objects made late in the start (the document behind DOMDocumentTypeImpl)
// and crashes on a start that did not get that far. So a failed start is
// left as it is, and from then on every Acquire of the process fails at once
// (every reader and ZRXMLReadWrite then gives 103); what the failed start
// made stays allocated to process end. Nothing of it is in this library's
// code: the start is the XML library's alone.
#ifndef ZRPARSEXMLR_ZRXPLATFORM_H
#define ZRPARSEXMLR_ZRXPLATFORM_H

namespace ZRXPrsUtil {

class ZRXPlatform {
public:
    // Takes one share: the first share starts the XML library. False (and no
    // share taken) if it can't be started, then and for the rest of the
    // process; never throws.
    static bool Acquire();
    // Gives one share back: the last one ends the XML library. Only after a
    // successful Acquire, exactly once for it.
    static void Release();
    // The number of shares held now (for tests).
    static long Shares();
};

} // namespace ZRXPrsUtil

#endif
