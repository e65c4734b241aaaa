// The machinery of the benchmarks that time a whole reading of a large
// document: each run in a child process of its own, which times itself and
// whose peak resident size the kernel reports to wait4; the XML library's
// bare SAX scan as the yardstick; and the table of medians and ratios that
// closes a run. The time is processor time (user and system), as the machine
// is shared and its wall clock drifts with the load; the wall time is kept
// beside it.
#ifndef ZRX_BENCH_BENCHCHILD_H
#define ZRX_BENCH_BENCHCHILD_H

#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXPlatform.h"

#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zrxbench {

// What one child run took.
struct Sample {
    double seconds = 0.0; // processor time
    double wallSeconds = 0.0;
    double peakMB = 0.0;
};

inline double ProcessorSeconds(const rusage& usage)
{
    auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

inline double ProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return ProcessorSeconds(usage);
}

// Runs work(payload) in a child process, which times it and hands the times
// and `payload` (plain data) back through a pipe and ends without any
// teardown, as tearing the document down is not part of reading it. False
// when the child could not run or work gave false.
template <typename Payload, typename Work>
bool RunInChild(Work work, Payload& payload, Sample& sample)
{
    struct Report {
        Payload payload;
        Sample sample;
        bool ok;
    };
    int channel[2];
    if (pipe(channel) != 0)
        return false;
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        close(channel[0]);
        Report mine{};
        const double cpuStart = ProcessorSeconds();
        const auto start = std::chrono::steady_clock::now();
        mine.ok = work(mine.payload);
        mine.sample.wallSeconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        mine.sample.seconds = ProcessorSeconds() - cpuStart;
        const bool written = write(channel[1], &mine, sizeof mine) == sizeof mine;
        _exit(written ? 0 : 1);
    }
    close(channel[1]);
    Report report{};
    const bool read = ::read(channel[0], &report, sizeof report) == sizeof report;
    close(channel[0]);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        return false;
    payload = report.payload;
    sample = report.sample;
    sample.peakMB = static_cast<double>(usage.ru_maxrss) / 1024.0; // kB on Linux
    return read && report.ok && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Runs a program with standard output to /dev/null and takes its processor
// time and peak size from wait4: the whole process, start and end included.
// False unless it ends with status 0.
inline bool RunProgram(const std::vector<std::string>& arguments, Sample& sample)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0)
            dup2(null, STDOUT_FILENO);
        std::vector<char*> argv;
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        return false;
    sample.wallSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    sample.seconds = ProcessorSeconds(usage);
    sample.peakMB = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class CountingHandler : public xercesc::DefaultHandler {
public:
    void startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const,
                      const xercesc::Attributes&) override
    {
        ++elements;
    }
    long elements = 0;
};

// The yardstick: the XML library's SAX2 reader over the file with a handler
// that builds nothing, set as the library's own parsers are (no namespaces,
// no validation, the same entity limits). The elements it saw, or 0 when the
// file did not read.
inline long SaxScan(const std::string& path)
{
    long elements = 0;
    const bool held = ZRXPrsUtil::ZRXPlatform::Acquire();
    {
        xercesc::SecurityManager security;
        security.setEntityExpansionLimit(xercesc::SecurityManager::ENTITY_EXPANSION_LIMIT);
        std::unique_ptr<xercesc::SAX2XMLReader> reader(
            xercesc::XMLReaderFactory::createXMLReader());
        reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
        reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
        reader->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
        reader->setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
        reader->setProperty(xercesc::XMLUni::fgXercesSecurityManager, &security);
        CountingHandler handler;
        reader->setContentHandler(&handler);
        reader->setErrorHandler(&handler);
        std::ifstream in(path, std::ios::binary);
        ZRXPrsUtil::ZRXInputSource source(in);
        reader->parse(source);
        if (reader->getErrorCount() == 0)
            elements = handler.elements;
    }
    if (held)
        ZRXPrsUtil::ZRXPlatform::Release();
    return elements;
}

inline double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// The samples of a run by (size, way), and the table of their medians, each
// with its ratios to the yardstick way of the same size.
class SampleTable {
public:
    void Add(long size, int way, const Sample& sample) { m_samples[{size, way}].push_back(sample); }
    bool Has(long size, int way) const { return m_samples.count({size, way}) > 0; }
    double PeakMedian(long size, int way) const
    {
        return Median(Field(m_samples.at({size, way}), &Sample::peakMB));
    }

    void Print(const char* sizeName, const char* const* wayNames, int yardstick) const
    {
        if (m_samples.empty())
            return;
        std::printf("\n%-9s %-16s %10s %10s %10s %12s %12s\n", sizeName, "way", "cpu s", "wall s",
                    "peak MB", "cpu / SAX", "peak / SAX");
        for (const auto& [key, samples] : m_samples) {
            const double time = Median(Field(samples, &Sample::seconds));
            const double peak = Median(Field(samples, &Sample::peakMB));
            const auto sax = m_samples.find({key.first, yardstick});
            const double saxTime =
                sax == m_samples.end() ? 0.0 : Median(Field(sax->second, &Sample::seconds));
            const double saxPeak =
                sax == m_samples.end() ? 0.0 : Median(Field(sax->second, &Sample::peakMB));
            std::printf("%-9ld %-16s %10.3f %10.3f %10.1f %12.2f %12.1f\n", key.first,
                        wayNames[key.second], time, Median(Field(samples, &Sample::wallSeconds)),
                        peak, saxTime > 0 ? time / saxTime : 0.0,
                        saxPeak > 0 ? peak / saxPeak : 0.0);
        }
        rusage self{};
        getrusage(RUSAGE_SELF, &self);
        std::printf("(medians of the repetitions; the driver process itself peaked at %.1f MB)\n",
                    static_cast<double>(self.ru_maxrss) / 1024.0);
    }

private:
    static std::vector<double> Field(const std::vector<Sample>& samples, double Sample::*field)
    {
        std::vector<double> values;
        for (const Sample& s : samples)
            values.push_back(s.*field);
        return values;
    }

    std::map<std::pair<long, int>, std::vector<Sample>> m_samples;
};

} // namespace zrxbench

#endif
