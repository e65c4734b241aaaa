#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRMV.h>

namespace ZRMTD_NAMESPACE {

ZRUniStats::SummStats::SummStats()
    : minimum(ZRMV::gMissingValue), maximum(ZRMV::gMissingValue), mean(ZRMV::gMissingValue),
      stdDev(ZRMV::gMissingValue)
{}

ZRUniStats::ZRUniStats() : m_kind(eEmpty), m_totalFreq(0.0) {}

ZRUniStats::ZRUniStats(const std::string& fieldName, double totalFreq,
                       const std::vector<double>& frequencies)
    : m_kind(eDiscrete), m_fieldName(fieldName), m_totalFreq(totalFreq), m_frequencies(frequencies)
{}

ZRUniStats::ZRUniStats(const std::string& fieldName, double totalFreq, const SummStats& summary,
                       const std::vector<double>& cutPoints, const std::vector<double>& frequencies)
    : m_kind(eContinuous), m_fieldName(fieldName), m_totalFreq(totalFreq), m_summary(summary),
      m_cutPoints(cutPoints), m_frequencies(frequencies)
{}

ZRUniStats::ZRUniStats(const ZRUniStats&) = default;
// All or nothing: the copy is made first, so a failed allocation leaves the
// object as it was.
ZRUniStats& ZRUniStats::operator=(const ZRUniStats& other)
{
    ZRUniStats copy(other);
    m_kind = copy.m_kind;
    m_fieldName.swap(copy.m_fieldName);
    m_totalFreq = copy.m_totalFreq;
    m_summary = copy.m_summary;
    m_cutPoints.swap(copy.m_cutPoints);
    m_frequencies.swap(copy.m_frequencies);
    return *this;
}
ZRUniStats::~ZRUniStats() = default;

bool ZRUniStats::IsValid() const
{
    if (m_kind == eEmpty)
        return false;
    if (ZRMV::IsMissing(m_totalFreq) || !(m_totalFreq >= 0.0))
        return false;
    for (double frequency : m_frequencies) {
        if (ZRMV::IsMissing(frequency) || !(frequency >= 0.0))
            return false;
    }
    if (m_kind == eDiscrete)
        return true;

    const bool noBins = m_cutPoints.empty() && m_frequencies.empty();
    if (!noBins && m_cutPoints.size() != m_frequencies.size() + 1)
        return false;
    for (std::size_t i = 1; i < m_cutPoints.size(); ++i) {
        const double lower = m_cutPoints[i - 1];
        const double upper = m_cutPoints[i];
        if (!ZRMV::IsMissing(lower) && !ZRMV::IsMissing(upper) && !(lower < upper))
            return false;
    }
    return ZRMV::IsMissing(m_summary.stdDev) || m_summary.stdDev >= 0.0;
}

bool ZRUniStats::IsEmpty() const
{
    return m_kind == eEmpty;
}
bool ZRUniStats::IsContinuous() const
{
    return m_kind == eContinuous;
}
const std::string& ZRUniStats::GetFieldName() const
{
    return m_fieldName;
}
double ZRUniStats::GetTotalFreq() const
{
    return m_totalFreq;
}
const ZRUniStats::SummStats& ZRUniStats::GetSummStats() const
{
    return m_summary;
}
const std::vector<double>& ZRUniStats::GetCutPoints() const
{
    return m_cutPoints;
}
const std::vector<double>& ZRUniStats::GetFrequencies() const
{
    return m_frequencies;
}

} // namespace ZRMTD_NAMESPACE
