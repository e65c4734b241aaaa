// The namespaces that callers name through macros, so that the product can
// move its metadata, XML-formatting and memory/encoding services without
// touching the code that uses them: callers write ZRMTD_NAMESPACE::ZRVarList.
#ifndef ZRCOMMONR_ZRNAMESPACES_H
#define ZRCOMMONR_ZRNAMESPACES_H

// Variable metadata: ZRVarList, IZRVariable, IZREncoder, ZRUniStats.
#define ZRMTD_NAMESPACE ZRMetadata
// XML text formatting: Format.
#define ZRXML_NAMESPACE ZRXml
// Memory and encoding services of zrparsexmlr (VORKMB..., ExtNameStr).
#define ZRMEM_NAMESPACE ZRMem

#endif
