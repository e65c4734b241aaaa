// Everything of the zrparsexmlr library.
#ifndef ZRPARSEXMLR_ZRPARSEXMLR_H
#define ZRPARSEXMLR_ZRPARSEXMLR_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRMem.h>
#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrparsexmlr/ZRSettingsParser.h>

#endif
