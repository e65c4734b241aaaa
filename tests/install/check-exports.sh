#!/usr/bin/env bash
# The shared library exports the public classes and helpers and hides the
# internal ones.
set -euo pipefail
lib=$1
syms=$(nm -DC --defined-only "$lib")
fail=0
expect() { grep -q -- "$1" <<<"$syms" || { echo "not exported: $1"; fail=1; }; }
hidden() { if grep -q -- "$1" <<<"$syms"; then echo "exported but internal: $1"; fail=1; fi; }
expect 'ZRXPrsUtil::ToUTF8\['
expect 'ZRXPrsUtil::ToUTF16('
expect 'ZRXPrsUtil::GetIntAttribute('
expect 'ZRXPrsUtil::AssembleDoublesList('
expect 'ZRXPrsUtil::ZRXTranscoder::TranscodeFrom('
expect 'ZRXPrsUtil::ZRXInputSource::makeStream('
expect 'ZRXPrsUtil::ZRDataModelParser::FillVarList('
expect 'ZRXPrsUtil::RemoveUnfinishedFiles('
expect 'ZRMem::VORKMB8to16('
expect 'ZRMem::ExtNameStr::'
hidden 'ZRMem::Internal::'
hidden 'ZRXPrsUtil::ParseInteger('
hidden 'ZRXPrsUtil::ParseDouble('
hidden 'ZRXPrsUtil::ParseDoublesList('
hidden 'ZRXPrsUtil::IsVendorExtension('
hidden 'ZRDataModelParserImp'
for extra in "${@:2}"; do expect "$extra"; done
exit $fail
