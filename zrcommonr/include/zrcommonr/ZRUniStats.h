// Univariate statistics of one field.
#ifndef ZRCOMMONR_ZRUNISTATS_H
#define ZRCOMMONR_ZRUNISTATS_H

#include <zrcommonr/ZRCommonExport.h>
#include <zrcommonr/ZRNamespaces.h>

#include <string>
#include <vector>

namespace ZRMTD_NAMESPACE {

// The statistics of one field: discrete (a frequency per value) or continuous
// (summary values, bin cut points and a frequency per bin). Cut points are
// ascending bin bounds, n + 1 for n frequencies; the first and the last may be
// ZRMV::gMissingValue for a bin without a bound on that side.
class ZRCOMMON_API ZRUniStats {
public:
    struct ZRCOMMON_API SummStats {
        SummStats();
        double minimum;
        double maximum;
        double mean;
        double stdDev;
    };

    // An empty object that holds no statistics; IsValid() is false.
    ZRUniStats();
    // Discrete statistics.
    ZRUniStats(const std::string& fieldName, double totalFreq,
               const std::vector<double>& frequencies);
    // Continuous statistics.
    ZRUniStats(const std::string& fieldName, double totalFreq, const SummStats& summary,
               const std::vector<double>& cutPoints, const std::vector<double>& frequencies);
    ZRUniStats(const ZRUniStats&);
    ZRUniStats& operator=(const ZRUniStats&);
    ~ZRUniStats();

    // True when the object holds statistics that make sense:
    // - it was built by one of the two filling constructors;
    // - the total frequency is 0 or more, and not missing;
    // - every frequency is 0 or more;
    // - continuous only: there are no cut points and no frequencies, or one cut
    //   point more than frequencies; each two neighbouring cut points that are
    //   both given (not missing) ascend strictly; and the standard deviation is
    //   missing or 0 or more.
    bool IsValid() const;

    bool IsEmpty() const; // default-constructed
    bool IsContinuous() const;
    const std::string& GetFieldName() const;
    double GetTotalFreq() const;
    const SummStats& GetSummStats() const;
    const std::vector<double>& GetCutPoints() const;
    const std::vector<double>& GetFrequencies() const;

private:
    enum Kind { eEmpty, eDiscrete, eContinuous };
    Kind m_kind;
    std::string m_fieldName;
    double m_totalFreq;
    SummStats m_summary;
    std::vector<double> m_cutPoints;
    std::vector<double> m_frequencies;
};

} // namespace ZRMTD_NAMESPACE

#endif
