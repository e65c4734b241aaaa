// The yardstick of the reader benchmarks: the XML library's DOM parser alone
// on the same bytes, with the library's own parser settings.
#ifndef ZRX_BENCH_BAREPARSE_H
#define ZRX_BENCH_BAREPARSE_H

#include "ZRXPrsUtilInternal.h"

#include <benchmark/benchmark.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <cstdint>
#include <memory>
#include <string>

// Times XercesDOMParser::parse of `text`. The caller keeps the XML library
// started (any reader object does) while this runs.
inline void TimeBareParse(benchmark::State& state, const std::string& text)
{
    std::unique_ptr<xercesc::XercesDOMParser> parser(ZRXPrsUtil::NewDOMParser());
    for (auto _ : state) {
        xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                          text.size(), "bench");
        parser->parse(source);
        benchmark::DoNotOptimize(parser->getDocument());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

#endif
