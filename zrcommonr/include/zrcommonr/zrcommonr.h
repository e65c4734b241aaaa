// Everything of the zrcommonr library.
#ifndef ZRCOMMONR_ZRCOMMONR_H
#define ZRCOMMONR_ZRCOMMONR_H

#include <zrcommonr/ZRCommonExport.h>
#include <zrcommonr/ZRFormat.h>
#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRNamespaces.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRStatusCodes.h>
#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRVarList.h>

#endif
