// Everything of the zrparsexmlr library.
//
// Threads: any number of objects of the library may be used at once, each by
// one thread at a time: every reader, ZRXMLReadWrite, the combiner, and the
// encoding conversions given a converter of their own or none. Objects on
// different threads may be made and destroyed side by side: the start and end
// of the XML library, which are not safe to call from two threads at once, go
// through one guarded count of shares (ZRXPlatformShare.h), taken when an
// object starts and given back when it ends, never during a parse or a query.
#ifndef ZRPARSEXMLR_ZRPARSEXMLR_H
#define ZRPARSEXMLR_ZRPARSEXMLR_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRMem.h>
#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRXPlatformShare.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrparsexmlr/ZRSettingsParser.h>

#endif
