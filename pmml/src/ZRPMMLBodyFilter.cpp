// ZRPMMLBodyFilter: the model elements of PMML and the parts of a model that
// are kept when its body is left out.
#include "ZRPMMLBodyFilter.h"

#include <zrparsexmlr/ZRPMMLParser.h>

#include <xercesc/util/XMLString.hpp>

#include <string>

namespace ZRXPrsUtil {

namespace {

// The elements that are PMML models, the one list of them (IsPMMLModelTag):
// the body filter cuts them down and zrx inspect lists them.
const char16_t* const kPMMLModelTags[] = {u"AnomalyDetectionModel",
                                          u"AssociationModel",
                                          u"BaselineModel",
                                          u"BayesianNetworkModel",
                                          u"ClusteringModel",
                                          u"GaussianProcessModel",
                                          u"GeneralRegressionModel",
                                          u"MiningModel",
                                          u"NaiveBayesModel",
                                          u"NearestNeighborModel",
                                          u"NeuralNetwork",
                                          u"RegressionModel",
                                          u"RuleSetModel",
                                          u"Scorecard",
                                          u"SequenceModel",
                                          u"SupportVectorMachineModel",
                                          u"TextModel",
                                          u"TimeSeriesModel",
                                          u"TreeModel"};

const char16_t* const kModelHeadTags[] = {u"MiningSchema",     u"Output",  u"ModelStats",
                                          u"ModelExplanation", u"Targets", u"LocalTransformations"};

template <std::size_t N>
bool InList(const XMLCh* tag, const char16_t* const (&list)[N])
{
    for (const char16_t* name : list)
        if (xercesc::XMLString::equals(tag, name))
            return true;
    return false;
}

} // namespace

bool IsPMMLModelTag(const XMLCh* tag)
{
    return tag && InList(tag, kPMMLModelTags);
}

bool IsPMMLModelTag(const std::string& tag)
{
    for (const char16_t* name : kPMMLModelTags) {
        std::size_t i = 0;
        while (i < tag.size() && name[i] != 0 &&
               static_cast<unsigned char>(tag[i]) == static_cast<char16_t>(name[i]))
            ++i;
        if (i == tag.size() && name[i] == 0)
            return true;
    }
    return false;
}

bool IsPMMLModelHeadTag(const XMLCh* tag)
{
    return tag && InList(tag, kModelHeadTags);
}

bool ZRPMMLBodyFilter::StartElement(const XMLCh* tag, bool isEmpty, std::size_t depth)
{
    if (skipped > 0) {
        if (!isEmpty)
            ++skipped;
        return false;
    }
    if (depth == 0) {
        pmmlRoot = active && xercesc::XMLString::equals(tag, u"PMML");
    } else if (depth == 1) {
        inModel = pmmlRoot && IsPMMLModelTag(tag);
    } else if (depth == kModelDepth && inModel && !IsPMMLModelHeadTag(tag)) {
        if (!isEmpty)
            skipped = 1;
        return false;
    }
    return true;
}

bool ZRPMMLBodyFilter::EndElement(std::size_t depth)
{
    if (skipped > 0) {
        --skipped;
        return false;
    }
    if (depth <= kModelDepth)
        inModel = false;
    return true;
}

bool ZRPMMLBodyFilter::StartEntity()
{
    if (skipped > 0) {
        ++skipped;
        return false;
    }
    return true;
}

bool ZRPMMLBodyFilter::EndEntity()
{
    if (skipped > 0) {
        --skipped;
        return false;
    }
    return true;
}

} // namespace ZRXPrsUtil
