// ZRPMMLParser: the univariate statistics of the chosen model, one
// UnivariateStats element per call.
#include <zrparsexmlr/ZRPMMLParser.h>

#include "ZRPMMLInternal.h"
#include "ZRXPrsUtilInternal.h"

#include <zrcommonr/ZRMV.h>

#include <xercesc/dom/DOMElement.hpp>

using xercesc::DOMElement;
using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::ZRUniStats;

namespace ZRXPrsUtil {

namespace {

// A double attribute that may be absent (or "NaN"): both give the missing
// value. 109 when the text is not a number.
ZRStatus ReadOptionalDouble(const DOMElement& element, const char* name, double& value)
{
    const int found = GetDoubleAttribute(element, name, value);
    if (found < 0)
        value = ZRMV::gMissingValue;
    return found > 0 ? PMMLFailure(ZRCommon::eNotAccepted) : ZRStatus();
}

// The frequencies of an Array of type "real" or "int": 108 without a type,
// 109 for another type, 114 for text that is no list of numbers or holds a
// negative (or missing) one.
ZRStatus ExtractFreqArray(std::vector<double>& frequencies, const DOMElement& array)
{
    const XMLCh* type = GetAttribute(array, "type");
    if (!type)
        return PMMLFailure(ZRCommon::eAttributeAbsent);
    if (!XStrEqualsUTF8Str(type, "real") && !XStrEqualsUTF8Str(type, "int"))
        return PMMLFailure(ZRCommon::eNotAccepted);
    if (!AssembleDoublesList(array, frequencies))
        return PMMLFailure(ZRCommon::eBadFrequencies);
    for (double frequency : frequencies)
        if (frequency < 0)
            return PMMLFailure(ZRCommon::eBadFrequencies);
    return ZRStatus();
}

} // namespace

ZRStatus ZRPMMLParser::FillUniStats(ZRUniStats& stats, const DOMElement*& position) const
try {
    const ZRXRestoreOnThrow<const DOMElement*> restore(position);
    ZRStatus result = status;
    if (result.IsOK() && !document)
        result = PMMLFailure(ZRCommon::eNoDocument);
    else if (result.IsOK() && !modelElement)
        result = PMMLFailure(ZRCommon::eNoModel);
    if (!result.IsOK())
        return result;

    if (position) {
        position = GetNextSiblingElmt(*position, "UnivariateStats");
    } else {
        const DOMElement* modelStats = GetFirstChildElmt(*modelElement, "ModelStats");
        position = modelStats ? GetFirstChildElmt(*modelStats, "UnivariateStats") : nullptr;
    }
    if (!position)
        return result;

    const DOMElement& uniStats = *position;
    const XMLCh* field = GetAttribute(uniStats, "field");
    if (!field)
        return PMMLFailure(ZRCommon::eAttributeAbsent);
    const DOMElement* counts = GetFirstChildElmt(uniStats, "Counts");
    if (!counts)
        return PMMLFailure(ZRCommon::eChildAbsent);
    double totalFreq = 0.0;
    const int found = GetDoubleAttribute(*counts, "totalFreq", totalFreq);
    if (found < 0)
        return PMMLFailure(ZRCommon::eAttributeAbsent);
    if (found > 0 || totalFreq < 0)
        return PMMLFailure(ZRCommon::eNotAccepted);

    const std::string fieldName = ToUTF8(field);
    result = GetFirstChildElmt(uniStats, "NumericInfo")
                 ? FillUniStatsCont(stats, fieldName, totalFreq, uniStats)
                 : FillUniStatsCat(stats, fieldName, totalFreq, uniStats);
    if (result.IsOK() && !stats.IsValid())
        result = PMMLFailure(ZRCommon::eInvalidStatistics);
    return result;
} catch (...) {
    return PMMLFailure(ZRCommon::eOutOfMemory);
}

ZRStatus ZRPMMLParser::FillUniStatsCat(ZRUniStats& stats, const std::string& fieldName,
                                       double totalFreq, const DOMElement& uniStats) const
{
    const DOMElement* discrStats = GetFirstChildElmt(uniStats, "DiscrStats");
    const DOMElement* array = discrStats ? GetFirstChildElmt(*discrStats, "Array") : nullptr;
    if (!array)
        return PMMLFailure(ZRCommon::eChildAbsent);
    std::vector<double> frequencies;
    const ZRStatus result = ExtractFreqArray(frequencies, *array);
    if (result.IsOK())
        stats = ZRUniStats(fieldName, totalFreq, frequencies);
    return result;
}

ZRStatus ZRPMMLParser::FillUniStatsCont(ZRUniStats& stats, const std::string& fieldName,
                                        double totalFreq, const DOMElement& uniStats) const
{
    const DOMElement* numericInfo = GetFirstChildElmt(uniStats, "NumericInfo");
    if (!numericInfo)
        return PMMLFailure(ZRCommon::eChildAbsent);
    ZRUniStats::SummStats summary;
    ZRStatus result = ReadOptionalDouble(*numericInfo, "minimum", summary.minimum);
    if (result.IsOK())
        result = ReadOptionalDouble(*numericInfo, "maximum", summary.maximum);
    if (result.IsOK())
        result = ReadOptionalDouble(*numericInfo, "mean", summary.mean);
    if (result.IsOK())
        result = ReadOptionalDouble(*numericInfo, "standardDeviation", summary.stdDev);
    if (!result.IsOK())
        return result;
    if (!ZRMV::IsMissing(summary.stdDev) && summary.stdDev < 0)
        return PMMLFailure(ZRCommon::eInvalidStatistics);

    // Without ContStats the summary has nowhere to go: the caller's object
    // is left as it is and only the validity test judges it.
    const DOMElement* contStats = GetFirstChildElmt(uniStats, "ContStats");
    if (!contStats)
        return result;
    std::vector<double> cutPoints;
    std::vector<double> frequencies;
    bool leftOpen = true;
    result = FillCutPointsFreqs(cutPoints, frequencies, leftOpen, *contStats);
    if (result.IsOK())
        stats = ZRUniStats(fieldName, totalFreq, summary, cutPoints, frequencies);
    return result;
}

ZRStatus ZRPMMLParser::FillCutPointsFreqs(std::vector<double>& cutPoints,
                                          std::vector<double>& frequencies, bool& leftOpen,
                                          const DOMElement& contStats) const
{
    cutPoints.clear();
    frequencies.clear();
    leftOpen = true;
    bool unbounded = false;
    ZRStatus result;
    for (const DOMElement* interval = GetFirstChildElmt(contStats, "Interval"); interval;
         interval = GetNextSiblingElmt(*interval, "Interval")) {
        if (unbounded)
            return PMMLFailure(ZRCommon::eIntervalsDontFit);
        double left = 0.0;
        double right = 0.0;
        bool open = true;
        result = ExtractInterval(left, right, open, *interval);
        if (!result.IsOK())
            return result;
        if (cutPoints.empty()) {
            leftOpen = open;
            cutPoints.push_back(left);
        } else if (open != leftOpen || ZRMV::IsMissing(left) || left < cutPoints.back()) {
            return PMMLFailure(ZRCommon::eIntervalsDontFit);
        } else if (left > cutPoints.back()) {
            // A gap between two Intervals becomes a bin of its own.
            cutPoints.push_back(left);
        }
        cutPoints.push_back(right);
        unbounded = ZRMV::IsMissing(right);
    }
    if (cutPoints.empty())
        return result;

    const DOMElement* array = GetFirstChildElmt(contStats, "Array");
    if (!array)
        return PMMLFailure(ZRCommon::eChildAbsent);
    result = ExtractFreqArray(frequencies, *array);
    if (result.IsOK() && frequencies.size() + 1 != cutPoints.size())
        result = PMMLFailure(ZRCommon::eIntervalsDontFit);
    return result;
}

ZRStatus ZRPMMLParser::ExtractInterval(double& leftMargin, double& rightMargin, bool& leftOpen,
                                       const DOMElement& interval) const
{
    ZRStatus result = ReadOptionalDouble(interval, "leftMargin", leftMargin);
    if (result.IsOK())
        result = ReadOptionalDouble(interval, "rightMargin", rightMargin);
    if (!result.IsOK())
        return result;
    const bool leftGiven = !ZRMV::IsMissing(leftMargin);
    const bool rightGiven = !ZRMV::IsMissing(rightMargin);
    if (!leftGiven && !rightGiven)
        return PMMLFailure(ZRCommon::eAttributeAbsent);
    if (leftGiven && rightGiven && leftMargin >= rightMargin)
        return PMMLFailure(ZRCommon::eNotAccepted);
    const XMLCh* closure = GetAttribute(interval, "closure");
    if (!closure)
        return PMMLFailure(ZRCommon::eAttributeAbsent);
    leftOpen = XStrEqualsUTF8Str(closure, "openOpen") || XStrEqualsUTF8Str(closure, "openClosed");
    return result;
}

} // namespace ZRXPrsUtil
