// Symbol visibility of the zrparsexmlr library. The library is built with
// hidden visibility; only what carries ZRXPRS_API is part of its binary
// interface.
#ifndef ZRPARSEXMLR_ZRXEXPORT_H
#define ZRPARSEXMLR_ZRXEXPORT_H

#if defined(_WIN32)
#if defined(ZRPARSEXMLR_BUILDING)
#define ZRXPRS_API __declspec(dllexport)
#else
#define ZRXPRS_API __declspec(dllimport)
#endif
#else
#define ZRXPRS_API __attribute__((visibility("default")))
#endif

#endif
