// ZRXPlatformShare: one share of the start of the XML library (Xerces-C),
// held for the life of the object.
//
// The XML library must be started before any of its objects is made and ended
// after the last one is gone, and neither call is safe when two threads make
// it at once. This library therefore starts and ends it through one guarded
// count of shares: the first share starts it, the last one given back ends it.
// Every object of the library that needs the XML library holds a share as its
// first member, so that the share outlives everything it made with the XML
// library. A program that uses the XML library itself beside this one (as
// `zrx validate` does for schema validation) holds a share the same way
// instead of calling XMLPlatformUtils::Initialize and Terminate: otherwise its
// Terminate could end the library under a parse on another thread.
//
// A start that fails (memory runs out in it, or the transcoding service can't
// be made) leaves the share not held; the objects of the library then give
// 103. The XML library can't be started again in that process, so every later
// share is not held either. Nothing is thrown.
#ifndef ZRPARSEXMLR_ZRXPLATFORMSHARE_H
#define ZRPARSEXMLR_ZRXPLATFORMSHARE_H

#include <zrparsexmlr/ZRXExport.h>

namespace ZRXPrsUtil {

class ZRXPRS_API ZRXPlatformShare {
public:
    // Takes a share: starts the XML library if no share is held.
    ZRXPlatformShare();
    // Gives the share back if it was taken: the last one ends the XML library.
    ~ZRXPlatformShare();
    ZRXPlatformShare(const ZRXPlatformShare&) = delete;
    ZRXPlatformShare& operator=(const ZRXPlatformShare&) = delete;

    // False when the XML library could not be started.
    bool IsHeld() const { return held; }

private:
    bool held;
};

} // namespace ZRXPrsUtil

#endif
