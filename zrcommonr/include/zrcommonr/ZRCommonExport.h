// Symbol visibility of the zrcommonr library. The library is built with hidden
// visibility; only what carries ZRCOMMON_API is part of its binary interface.
#ifndef ZRCOMMONR_ZRCOMMONEXPORT_H
#define ZRCOMMONR_ZRCOMMONEXPORT_H

#if defined(_WIN32)
#if defined(ZRCOMMONR_BUILDING)
#define ZRCOMMON_API __declspec(dllexport)
#else
#define ZRCOMMON_API __declspec(dllimport)
#endif
#else
#define ZRCOMMON_API __attribute__((visibility("default")))
#endif

#endif
