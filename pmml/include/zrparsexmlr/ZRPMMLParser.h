// ZRPMMLParser: reads a PMML document from a stream and serves its data
// dictionary as variables, the bins of its transformation dictionary, and the
// univariate statistics of a chosen model.
#ifndef ZRPARSEXMLR_ZRPMMLPARSER_H
#define ZRPARSEXMLR_ZRPMMLPARSER_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXPlatformShare.h>
#include <zrparsexmlr/ZRXercesFwd.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRVarList.h>

#include <istream>
#include <string>
#include <vector>

namespace ZRXPrsUtil {

// The order of calls: construct, ParseToDOM, then FillVarList; SetModelElmt
// and FillUniStats when statistics are wanted. Every query starts from the
// status of construction and of the last parse and returns it at once when it
// is not OK; queries never change it. Element and attribute names are compared
// exactly, on the tag as written: a tag with a namespace prefix matches nothing.
//
// One object reads any number of documents one after the other and holds the
// memory of the last one only: each ParseToDOM frees the document before it.
// A document nested deeper than 2,000 elements is refused with 104.
//
// Threads: as for every object of the library (zrparsexmlr.h).
//
// A failed allocation gives 103 in the constructor, 104 in ParseToDOM (103
// when the parser that a failed parse used up can't be made anew; the next
// parse tries again) and 130 in FillVarList and FillUniStats; GetXercesMessage
// then gives "". No exception leaves any operation, nothing is lost, and the
// object stays usable: the same call made again works.
class ZRXPRS_API ZRPMMLParser {
public:
    // Takes a share of the XML library's start (ZRXPlatformShare) and makes
    // the DOM parser; any failure gives status 103 and no exception.
    ZRPMMLParser();
    // Frees the parser, then gives the share back (the last share ends the
    // XML library).
    virtual ~ZRPMMLParser();
    ZRPMMLParser(const ZRPMMLParser&) = delete;
    ZRPMMLParser& operator=(const ZRPMMLParser&) = delete;

    // Parses the stream and finds the PMML root, its DataDictionary (required)
    // and TransformationDictionary (optional). 103 after a failed
    // construction, 104 for any failed parse: not well-formed, an external
    // entity in use (none is resolved, nor an external DTD loaded), entities
    // that expand beyond the XML library's limit, an exception of any kind, or
    // no document; GetXercesMessage then holds the XML library's message as
    // far as the parse helper passes it on, and is empty otherwise. 105 no
    // root or a root other than "PMML"; 106 no DataDictionary. The earlier
    // document, and the model chosen on it, are gone whatever the outcome.
    virtual ZRCommon::ZRStatus ParseToDOM(std::istream& stream);

    // Whether the next ParseToDOM builds the bodies of the models; true, the
    // whole document, unless set otherwise. With false, each child element of
    // the PMML root that is a model (IsPMMLModelTag, below) is built with its
    // attributes and its MiningSchema, Output,
    // ModelStats, ModelExplanation, Targets and LocalTransformations
    // children, each whole, and nothing else of it: tree nodes, segments and
    // the models inside them, regression tables, neurons, support vectors,
    // and the text, comments and processing instructions directly inside the
    // model are skipped as they are read and take neither time to build nor
    // memory (what an entity expands into is judged where it stands). A
    // skipped body is not held to the parser's nesting limit, as none of it
    // is built. Everything outside the models (Header, DataDictionary,
    // TransformationDictionary, Extension, ...) is built whole, so
    // FillVarList, and FillUniStats on any model that is a child of the root,
    // give what they give on the whole document. Models below the root (in a
    // Segment, an Extension, ...) are inside a skipped body or kept whole
    // with the element that holds them. The setting stays for every later
    // parse until it is set again; a failed construction ignores it.
    void SetReadModelBodies(bool readBodies);
    bool GetReadModelBodies() const;

    // Whether the next ParseToDOM builds the DataField elements of the
    // DataDictionary as DOM nodes; true, as the whole document, unless set
    // otherwise. With false, each DataField child of the first DataDictionary
    // of the PMML root is read as the document streams into a compact record
    // (its name, label, type, values, labels, missing values and ranges, with
    // numbers as doubles and texts once), and no node is made of it or of
    // anything inside it: the DOM's DataDictionary keeps its attributes and
    // every other child (the text between the fields joins into one text
    // node, as it would without them), while DataField elements anywhere
    // else, as in a second DataDictionary, are built. FillVarList then reads
    // the records and gives exactly what it gives on the whole document: the
    // same calls on the list and its encoders in the same order, and the
    // same status (a field that breaks a rule fails where it would, a
    // document that is not well-formed gives 104, one nested too deep inside
    // a field gives 104 too, as the fields count for the nesting limit). A
    // wide dictionary so takes a fraction of the time and memory of its DOM.
    // The records live until the next ParseToDOM (which frees them first,
    // whatever its outcome) or the object's destruction. The setting applies
    // from the next ParseToDOM on, until it is set again, and combines with
    // SetReadModelBodies; a failed construction ignores it.
    void SetFieldsInDOM(bool fieldsInDOM);
    bool GetFieldsInDOM() const;

    ZRCommon::ZRStatus GetStatus() const;
    std::string GetXercesMessage() const;
    const xercesc::DOMElement* GetRootElement() const;
    // Chooses the model whose statistics FillUniStats walks. False, with
    // nothing stored, without a successfully parsed document. The element is
    // not inspected.
    bool SetModelElmt(const xercesc::DOMElement& model);

    // Adds one variable per DataField, in document order (only those named in
    // `wantedFields` unless it is empty), with role input, and feeds its
    // encoder the missing values and the invalid range. With `useBins`, a
    // continuous field is binned by the first Discretize on it in the
    // TransformationDictionary; none gives 110. Other failures: 107 no
    // document, 108 no name/dataType/optype, 109 a dataType that is not
    // accepted, 111 the list refused the variable. The walk stops at the first
    // failure; what was added stays.
    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                   const std::vector<std::string>& wantedFields,
                                   bool useBins) const;

    // Walks the UnivariateStats of the chosen model's ModelStats, one per
    // call: start with a null position and call again with the same pointer.
    // Not null and OK: `stats` holds that field. Null and OK: the end (stats
    // untouched). Not null and a failure: that element is faulty and the next
    // call moves past it. Position untouched: no usable document (the held
    // status, or 107) or no model chosen (112). `stats` is assigned only on
    // success. A failed allocation gives 130 with both untouched, so the
    // same call made again reads the same element.
    // The text "NaN" stands for the missing value everywhere: a NaN margin of
    // an Interval counts as absent, a NaN standard deviation as not given,
    // while a NaN totalFreq (109) or frequency (114) is refused, as a missing
    // count is no count.
    ZRCommon::ZRStatus FillUniStats(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                    const xercesc::DOMElement*& position) const;

protected:
    // The helpers of FillUniStats, for derived readers. Cat: the first Array
    // of DiscrStats. Cont: the summary of NumericInfo and, when there is a
    // ContStats, its cut points and frequencies; without ContStats it gives
    // OK and leaves `stats` as it was.
    ZRCommon::ZRStatus FillUniStatsCat(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                       const std::string& fieldName, double totalFreq,
                                       const xercesc::DOMElement& uniStats) const;
    ZRCommon::ZRStatus FillUniStatsCont(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                        const std::string& fieldName, double totalFreq,
                                        const xercesc::DOMElement& uniStats) const;
    // Cut points from the Interval list of a ContStats (touching Intervals
    // share a cut point, a gap becomes a bin of its own, a missing first left
    // or last right margin is an open end) and the frequencies of its first
    // Array, one per bin. 115 for Intervals that don't fit together or a
    // frequency count that does not match; no Interval gives two empty lists.
    ZRCommon::ZRStatus FillCutPointsFreqs(std::vector<double>& cutPoints,
                                          std::vector<double>& frequencies, bool& leftOpen,
                                          const xercesc::DOMElement& contStats) const;
    // The margins (missing value when absent) and whether the Interval is
    // open on the left. 108 without both margins or without closure, 109 for
    // a margin that is not a number or a left margin not below the right.
    ZRCommon::ZRStatus ExtractInterval(double& leftMargin, double& rightMargin, bool& leftOpen,
                                       const xercesc::DOMElement& interval) const;
    // The bins of the first Discretize on `fieldName` in the
    // TransformationDictionary: the lower bound of the first Interval, then
    // the upper bound of every Interval, in document order (an unusable
    // margin gives the widest finite bound), and the binValue of every
    // DiscretizeBin that has one. False, with both lists empty, when there is
    // none (or no TransformationDictionary).
    bool SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                            std::vector<std::string>& binValues) const;

private:
    // First, so that it is given back after everything made with the XML library.
    ZRXPlatformShare share;

protected:
    ZRCommon::ZRStatus status;
    xercesc::XercesDOMParser* parser;
    std::string xercesMessage;
    xercesc::DOMDocument* document;
    const xercesc::DOMElement* rootElement;
    const xercesc::DOMElement* dataDictionary;
    const xercesc::DOMElement* transDictionary;
    const xercesc::DOMElement* modelElement;
    // SetReadModelBodies, applied by each ParseToDOM.
    bool readModelBodies;
    // SetFieldsInDOM, applied by each ParseToDOM.
    bool fieldsInDOM;
};

// True for the tag of an element that is a PMML model: AnomalyDetectionModel,
// AssociationModel, BaselineModel, BayesianNetworkModel, ClusteringModel,
// GaussianProcessModel, GeneralRegressionModel, MiningModel, NaiveBayesModel,
// NearestNeighborModel, NeuralNetwork, RegressionModel, RuleSetModel,
// Scorecard, SequenceModel, SupportVectorMachineModel, TextModel,
// TimeSeriesModel and TreeModel, compared exactly on the tag as written (a
// tag with a namespace prefix is none). These are the models whose bodies
// SetReadModelBodies(false) leaves out; the combiner nests fewer kinds
// (ZRXSplitPMMLCombiner::CheckSplitModel).
ZRXPRS_API bool IsPMMLModelTag(const std::string& tag);

} // namespace ZRXPrsUtil

#endif
