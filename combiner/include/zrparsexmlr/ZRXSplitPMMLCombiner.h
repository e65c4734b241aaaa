// ZRXSplitPMMLCombiner: merges the PMML documents of a split analysis, one per
// combination of split values, into one PMML document: a MiningModel whose
// Segmentation ("selectFirst") holds one Segment per model, guarded by a
// predicate on the split variables.
//
// Use: construct over the list of split variables, AddModel once per model
// file with the split values of that model (in the list's order), then
// ExportMiningModel once.
//
// The output document, built in memory from the first accepted model:
//   PMML              the first model's root with its attributes, no children
//     Header          deep copy of the first model's
//     DataDictionary  the first model's fields, then one DataField per split
//                     variable, then each field of a later model whose name is
//                     new; fields of a known name gain only their new Values.
//                     numberOfFields counts the merged fields.
//     MiningModel functionName = the first model's
//       MiningSchema  the first model's fields, one active MiningField per
//                     split variable, then each later field of a new name
//       Segmentation multipleModelMethod="selectFirst"
//         Segment     per accepted model, in call order: the predicate
//                     (SimplePredicate for one split variable, else a
//                     CompoundPredicate "and"), then a deep copy of the model;
//                     the DerivedFields of the model's TransformationDictionary
//                     become a LocalTransformations, the copy's last child.
// Names are compared exactly; the first definition of a name wins, silently.
// This is the literal form, the default, kept for callers that rely on it.
//
// The strict PMML form (SetStrictPMML(true)): the literal form gives
// schema-valid PMML for the models it was made for, but not for models of
// common producers: it puts a model's LocalTransformations where the PMML
// schema allows none, drops the DefineFunctions that the model's Apply
// elements call, writes a split variable that the first model already has as
// a second DataField, and carries no namespace declaration of a later model.
// In the strict form, the output of well-formed, schema-valid split models of
// one PMML version is schema-valid and self-contained; it departs from the
// literal form in these points only:
//  - a model's LocalTransformations stands at its place in the schema, after
//    the leading Extension, MiningSchema, Output, ModelStats,
//    ModelExplanation and Targets children (the same place in every model
//    kind of PMML 4.x); the DerivedFields of the model's
//    TransformationDictionary join a LocalTransformations that the model
//    already has, before the model's own DerivedFields, and a name that the
//    model derives itself keeps the model's definition. No
//    LocalTransformations is made when there is no DerivedField to hold;
//  - the DefineFunctions of each model's TransformationDictionary go into one
//    TransformationDictionary of the output, right after its DataDictionary.
//    A function whose name is there already stands once when the two are the
//    same text (equal DOM nodes: white space and comments count); another
//    definition of the name refuses the model (128);
//  - a later model's elements and attributes keep their namespace prefixes'
//    declarations: a prefix that its tags or attribute names in the model,
//    its DataDictionary or its TransformationDictionary use, and that its own
//    PMML element declares, is declared on the output's PMML element too. A
//    prefix that the output binds to another namespace refuses the model
//    (129);
//  - a later model whose PMML element is in another default namespace than
//    the first model's (another PMML version, or none) is refused (127): the
//    output has one version;
//  - a split variable whose name the first model's DataDictionary already
//    holds gets no DataField of its own: the existing DataField takes the
//    split values it lacks, after its own. One that the first model's
//    MiningSchema already holds gets no second MiningField; the existing one
//    stands with its attributes;
//  - new DataFields (a split variable's, a later model's) stand before the
//    dictionary's Taxonomy elements, which the schema puts after the fields.
// 127, 128 and 129 leave the output as it was, like every refused model. A
// later document without a model is checked, and gives its functions and
// declarations, as it gives its DataDictionary fields.
//
// AddModel statuses: 126 the number of values differs from the number of
// split variables (the file is not opened); 103/104 the file can't be read or
// parsed; 125 the model is itself a MiningModel; 124 a later model has another
// functionName than the first; 108 the model has no functionName; in the
// strict form also 127, 128 and 129 (see above). A refused
// model changes nothing in the output, and the next AddModel may succeed.
// An empty path or an empty list of values returns the previous status and
// does nothing.
//
// Decisions on what the model format leaves open:
//  - Life of the XML library: the combiner itself keeps the XML library
//    started while its output document exists (from the first accepted
//    model to the export or the destruction): it takes one share of the
//    library's start then and gives it back once. A caller needs no object of
//    its own for that.
//  - Paths are local file names: a path is opened as a file on this machine
//    and never taken for a URL, so "http://host/m.pmml" is a relative path
//    that is not found (104) and nothing is fetched.
//  - Entity references of a model (to entities of its own internal DTD) are
//    read as their text, so the output, which has no DTD, holds the text.
//  - A model nested deeper than 2,000 elements is refused with 104 (see
//    ZRXMLReadWrite.h). The output holds each model 3 levels deeper (in
//    MiningModel/Segmentation/Segment), so the output of a model deeper than
//    1,997 levels is written, but the library's readers refuse it.
//  - The first model is checked whole before the output document is made: a
//    root that is not PMML gives 105, a PMML root without any model 113, a
//    MiningModel 125, no functionName 108 and an empty one 109. A refused
//    first model leaves nothing behind, so the next good model becomes the
//    first. (A later document without a model still has its DataDictionary
//    merged and gets OK, without a Segment.)
//  - A first model without DataDictionary or without MiningSchema gets an
//    empty one in the output, so that the split variables always stand in
//    both and the predicates name declared fields.
//  - AddModel after ExportMiningModel starts a new output document: every
//    list of the previous one is cleared, GetNModels starts again from 0, and
//    the next accepted model becomes the first. The released document's nodes
//    are never touched.
//  - A combiner destroyed before the export releases its output document and
//    its hold on the XML library: nothing leaks.
//  - A predicate that can't be built (one split variable with an empty value
//    or without a name; several split variables none of which gives a
//    condition) never puts a null node into the DOM: the Segment gets the
//    predicate False instead, so that it is never selected on a condition it
//    does not carry, and the document stays well formed PMML. With several
//    split variables the conditions that can be built stand.
//  - A DataField without "name", a MiningField without "name" and a Value
//    without "value" are left out of the merge: they take part in no
//    comparison and a later model's such element is not taken. The first
//    model's stand in the output as they came; numberOfFields counts the
//    named fields.
//  - A split variable without a name, or one that the list gives as null,
//    gets no DataField and no MiningField; its entry in the combiner's lists
//    keeps its place, so that entry i always speaks of variable i. The
//    predicates read the variables' names from the list at each AddModel.
//  - The split values are matched to the variables by position and count
//    only; their texts are not compared with the variables' value texts, so a
//    model may stand for a value that the list does not record.
//  - An error of the XML library's DOM, or a failed allocation, while a model
//    is taken ends AddModel with 104 instead of leaving by an exception, and
//    the output is as it was before the call (a later model's merge is undone
//    step by step), so the same AddModel made again gives the normal result.
//    Memory gone before the model is read gives 104 too, or 103 where no
//    parser can be made; memory gone in the constructor is made good by the
//    next AddModel, which reads the split variables again first. No
//    exception leaves any operation.
//
// Threads: as for every object of the library (zrparsexmlr.h).
// The variable list is held by reference and must outlive the combiner.
#ifndef ZRPARSEXMLR_ZRXSPLITPMMLCOMBINER_H
#define ZRPARSEXMLR_ZRXSPLITPMMLCOMBINER_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrparsexmlr/ZRXercesFwd.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace ZRXPrsUtil {

class ZRXOwnedMemory;

class ZRXPRS_API ZRXSplitPMMLCombiner {
public:
    // Reads the split variables' names, labels, types and value texts; the
    // list must outlive the combiner. Touches no XML.
    explicit ZRXSplitPMMLCombiner(const ZRMTD_NAMESPACE::ZRVarList& splitVars);
    ~ZRXSplitPMMLCombiner();
    ZRXSplitPMMLCombiner(const ZRXSplitPMMLCombiner&) = delete;
    ZRXSplitPMMLCombiner& operator=(const ZRXSplitPMMLCombiner&) = delete;

    // Takes the model of the PMML file at `path`, built for the split values
    // `values` (one per split variable, in list order).
    ZRCommon::ZRStatus AddModel(const std::string& path, const std::vector<std::string>& values);
    // Writes the merged document to `path` and releases it (118: the file
    // can't be written). Before any accepted model it returns the last status
    // and writes nothing; an empty path writes nothing and gives OK.
    // The file is replaced whole or not at all (ZRXMLReadWrite::WriteFromDOM):
    // a failed write, a full disk or a failed allocation among them, leaves
    // the file that was at `path` as it was, not cut off half-way as a write
    // straight onto the path did. And a failed write keeps the merged
    // document, so the export can be made again (to another path, or once
    // there is room): this departs from releasing it whatever the outcome,
    // which lost the work of every AddModel on a full disk.
    ZRCommon::ZRStatus ExportMiningModel(const std::string& path);

    // The strict PMML form with true, the literal form with false (the
    // default, the output as it always was). The strict form departs from
    // the literal one so that valid split models of one PMML version give a
    // valid, self-contained output (the class comment tells each point):
    //  - LocalTransformations at its place in the model (after Extension,
    //    MiningSchema, Output, ModelStats, ModelExplanation, Targets), not
    //    last, which the schema forbids; the dictionary's DerivedFields join
    //    the model's own LocalTransformations instead of a second one, the
    //    model's own definition of a name standing;
    //  - the DefineFunctions kept, in one TransformationDictionary after the
    //    DataDictionary, since the model's Apply elements call them; one
    //    name, one text, else 128;
    //  - a later model's namespace declarations that its taken elements
    //    need carried to the output's root, else its prefixes are unbound;
    //    a prefix bound otherwise there gives 129;
    //  - a later model of another PMML namespace refused (127): the output
    //    has one version;
    //  - a split variable that the first model has merged into its field,
    //    not written a second time;
    //  - new DataFields before the dictionary's Taxonomy.
    // The form is fixed when the first model of an output document is
    // taken: a call while a document is being built applies from the next
    // one (after ExportMiningModel), so that one output never mixes the two.
    void SetStrictPMML(bool strict);

    // Reads the document at `path` and tells whether AddModel, as things
    // stand, would take a model from it, without taking anything. AddModel
    // lets a later document through with OK and no Segment when its root is
    // not PMML or it has no model of a kind the combiner nests (its
    // DataDictionary is merged all the same); a caller that wants to refuse
    // such a document asks here first. The status is the one a first model
    // gets: 104 the document can't be read or parsed, 105 its root is not
    // PMML, 113 it has no model of a kind the combiner nests, 125 its model
    // is a MiningModel, 108 or 109 the model's functionName is absent or
    // empty; else OK. `doubled` gets the names of the split variables that
    // taking the document would write twice: in the literal form, when no
    // model has been taken yet, those that its DataDictionary or its model's
    // MiningSchema already holds (empty otherwise). The statuses that depend
    // on the models taken before (124, 127 to 129) are AddModel's alone.
    // The kinds the combiner nests, searched in this order among the children
    // of PMML: MiningModel (refused, 125), AssociationModel, ClusteringModel,
    // GeneralRegressionModel, NaiveBayesModel, NeuralNetwork, RegressionModel,
    // RuleSetModel, SequenceModel, SupportVectorMachineModel, TextModel,
    // TimeSeriesModel, TreeModel; any other model (a Scorecard, a
    // NearestNeighborModel, a BaselineModel, ...) is none.
    ZRCommon::ZRStatus CheckSplitModel(const std::string& path,
                                       std::vector<std::string>& doubled) const;

    // The number of Segments of the output document.
    int GetNModels() const;
    // The result of the last AddModel or ExportMiningModel that did any work.
    ZRCommon::ZRStatus GetStatus() const;
    // Writes nothing to the stream.
    void Display(std::ostream& out) const;

private:
    typedef std::vector<std::string> Texts;

    // Intake.
    ZRCommon::ZRStatus ParseSplitModelXML(xercesc::DOMDocument* parsed, const Texts& values);
    ZRCommon::ZRStatus CheckFirstModel(const xercesc::DOMElement* pmml,
                                       const xercesc::DOMElement* model,
                                       std::string& function) const;
    xercesc::DOMDocument* CreateEmptyMiningModel(bool& created);
    ZRCommon::ZRStatus FillCommonToMiningModel(xercesc::DOMDocument* parsed, const Texts& values);
    ZRCommon::ZRStatus MergeModelToMiningModel(xercesc::DOMDocument* parsed, const Texts& values);
    void ReleaseDocument();

    // Finding things in a parsed model.
    const xercesc::DOMElement* GetPMML(const xercesc::DOMDocument* parsed) const;
    // The first child of `pmml` that is a model the combiner nests (kNestedModelTags).
    const xercesc::DOMElement* GetNestedModel(const xercesc::DOMElement* pmml) const;
    const xercesc::DOMElement* GetDataDict(const xercesc::DOMElement* pmml) const;
    const xercesc::DOMElement* GetTransDict(const xercesc::DOMElement* pmml) const;
    const xercesc::DOMElement* GetMiningSchema(const xercesc::DOMElement* model) const;
    ZRCommon::ZRStatus IsMiningModel(const xercesc::DOMElement* model) const;
    ZRCommon::ZRStatus IsConsistentFunctionName(const xercesc::DOMElement* model) const;
    ZRCommon::ZRStatus GetFunctionNameAtt(const xercesc::DOMElement* model, std::string& out) const;

    // Copies into the output document.
    xercesc::DOMNode* CopyPMML(const xercesc::DOMElement* pmml, bool deep);
    // Copies `source` (with everything below it when `deep`) into the output
    // document, node for node as the XML library's import would, and appends
    // it to `parent`, or puts it before `before` when that is not null; null
    // if the source or the parent is null.
    xercesc::DOMNode* CopyChild(const xercesc::DOMNode* source, xercesc::DOMNode* parent, bool deep,
                                xercesc::DOMNode* before = nullptr);
    // A new element `tag`, appended to `parent` or put before `before`.
    xercesc::DOMElement* AppendNewElement(xercesc::DOMNode* parent, const char* tag,
                                          xercesc::DOMNode* before = nullptr);
    xercesc::DOMNode* CreateMiningModel(xercesc::DOMNode* parent, const std::string& function);
    ZRCommon::ZRStatus WriteDocToPMMLFile(const xercesc::DOMDocument* doc, const std::string& path);

    // Split-variable metadata.
    void InitSplitVarMetadata(const ZRMTD_NAMESPACE::ZRVarList& splitVars);
    bool GetSplitVariableInfo(const ZRMTD_NAMESPACE::IZRVariable* var, std::string& name,
                              std::string& label, std::string& optype, std::string& dataType) const;
    std::string GetSplitVarName(int index) const;

    // Data dictionary merge.
    void EnumDataFields(const xercesc::DOMNode* dictionary, std::vector<xercesc::DOMNode*>& nodes,
                        Texts& names) const;
    void EnumValuesOfDataField(const xercesc::DOMNode* field, std::vector<xercesc::DOMNode*>& nodes,
                               Texts& texts) const;
    void UpdateNumOfDataFields(xercesc::DOMNode* dictionary, int count);
    void InsertDataFieldElem(xercesc::DOMNode* dictionary, int index);
    xercesc::DOMNode* InsertDataField(const xercesc::DOMNode* field, xercesc::DOMNode* dictionary);
    xercesc::DOMNode* InsertValueOfDataField(const xercesc::DOMNode* value, xercesc::DOMNode* field,
                                             Texts& fieldTexts);
    void UpdateDataDict(const xercesc::DOMElement* modelDict, xercesc::DOMNode* dictionary);
    void IndexField(xercesc::DOMNode* node, const std::string& name);

    // Mining schema merge.
    void InsertMiningFieldElem(xercesc::DOMNode* schema, int index);
    void InsertSplitVarsToMiningModel(xercesc::DOMNode* dictionary, xercesc::DOMNode* schema);
    xercesc::DOMNode* InsertMiningField(const xercesc::DOMElement* field, xercesc::DOMNode* schema);
    void ReadNamesOfMiningFields(const xercesc::DOMElement* schema,
                                 std::vector<const xercesc::DOMElement*>& elements,
                                 Texts& names) const;
    void UpdateMiningSchema(const xercesc::DOMElement* modelSchema, xercesc::DOMNode* schema);
    void IndexMiningField(const std::string& name);

    // Segments and predicates.
    xercesc::DOMNode* CreateSegmentation(xercesc::DOMNode* miningModel);
    xercesc::DOMNode* InsertSegment(xercesc::DOMNode* segmentationNode,
                                    const xercesc::DOMElement* model,
                                    const xercesc::DOMElement* transDict, const Texts& values);
    xercesc::DOMNode* InsertPredicate(xercesc::DOMNode* segment, const Texts& values);
    xercesc::DOMNode* InsertSimplePredicate(xercesc::DOMNode* parent, int index,
                                            const std::string& value);
    xercesc::DOMNode* InsertCompoundPredicate(xercesc::DOMNode* parent, const Texts& values);
    xercesc::DOMNode* CopyTransDictToLocal(const xercesc::DOMElement* transDict,
                                           xercesc::DOMNode* modelCopy);

    // The strict form.
    typedef std::vector<std::pair<std::string, std::string>> Declarations;
    ZRCommon::ZRStatus CheckStrictModel(const xercesc::DOMElement* pmml,
                                        const xercesc::DOMElement* model,
                                        Declarations& carried) const;
    void CarryDeclarations(const Declarations& carried);
    void TakeFunctions(const xercesc::DOMElement* transDict);
    xercesc::DOMNode* PlaceTransDictInModel(const xercesc::DOMElement* transDict,
                                            xercesc::DOMNode* modelCopy);
    bool MergeSplitVarIntoField(int index, const std::vector<xercesc::DOMNode*>& nodes,
                                const Texts& names);

    const ZRMTD_NAMESPACE::ZRVarList& varList;
    ZRCommon::ZRStatus status;
    Texts splitVarNames;
    Texts splitVarLabels;
    Texts splitVarOptypes;
    Texts splitVarDataTypes;
    std::vector<Texts> splitVarValues;
    int modelCount;
    xercesc::DOMDocument* document;
    std::string functionName;
    xercesc::DOMNode* dataDictionary;
    Texts fieldNames;
    std::vector<xercesc::DOMNode*> fieldNodes;
    std::vector<Texts> fieldValues;
    xercesc::DOMNode* miningSchema;
    xercesc::DOMNode* segmentation;
    Texts miningFieldNames;
    // Indexes beside the lists above, which keep the document order: the
    // first position of each name, so that a merge looks a name up at once
    // instead of searching the lists from the front.
    std::unordered_map<std::string, std::size_t> fieldPositions;
    // For each merged field, the texts of the first `indexed` entries of its
    // fieldValues list, made when a later model first brings values for the
    // field and brought up to date at each later merge of it, so that a
    // value is looked up at once instead of searched for.
    struct ValueIndex {
        std::unordered_set<std::string> texts;
        std::size_t indexed = 0;
    };
    std::vector<ValueIndex> fieldValueIndexes;
    std::unordered_map<std::string, std::size_t> miningFieldPositions;
    // True while the combiner holds its own start of the XML library.
    bool holdsXMLLibrary;
    // True once the split variables' names, labels and values are read from
    // the variable list (memory may run out in it: the next AddModel tries again).
    bool splitVarsRead;
    // The form asked for, and the form of the output document being built.
    bool strictPMML;
    bool strictOutput;
    // Strict form: the output's TransformationDictionary (null until a model
    // brings a DefineFunction) and its functions by name; the first Taxonomy
    // of the output's DataDictionary, before which new DataFields go (null:
    // they are appended).
    xercesc::DOMNode* transDictionary;
    xercesc::DOMNode* dataFieldsEnd;
    std::unordered_map<std::string, const xercesc::DOMElement*> functions;

    // The memory of `document`, freed after it.
    std::unique_ptr<ZRXOwnedMemory> documentMemory;

    // The undo of a later model whose merge fails half-way: the output as it
    // was before the merge, and each known field as it was before it gained
    // its first new Value in the merge.
    // In the strict form also the declarations on the output's root, the
    // output's TransformationDictionary and its functions, and the fields
    // that stand before the dictionary's first Taxonomy.
    struct OutputMark {
        std::size_t fields = 0;
        std::size_t miningFields = 0;
        int models = 0;
        xercesc::DOMNode* lastField = nullptr;
        xercesc::DOMNode* lastMiningField = nullptr;
        xercesc::DOMNode* lastSegment = nullptr;
        XMLSize_t rootAttributes = 0;
        xercesc::DOMNode* transDictionary = nullptr;
        xercesc::DOMNode* lastFunction = nullptr;
    };
    struct FieldMark {
        std::size_t field;
        std::size_t values;
        xercesc::DOMNode* lastChild;
    };
    bool ReadSplitVariables();
    OutputMark MarkOutput() const;
    void MarkField(std::size_t field);
    void RollBack(const OutputMark& mark);
    std::vector<FieldMark> touchedFields;
};

} // namespace ZRXPrsUtil

#endif
