// zrx inspect: what the library's readers read from one document, as tables
// or as one JSON document. Everything is gathered once into a JSON value; the
// text form is printed from it, so that both forms always say the same.
//
// Decisions:
//  - The kind comes from the document element: "DataModel" is read by the
//    DataModel reader; anything else by the PMML reader, which refuses a root
//    other than PMML (105). A PMML document whose first MiningBuildTask holds
//    an Extension with Parameters is then read again by the settings reader.
//  - Statistics are read for the models directly under PMML, in document
//    order; models nested in a MiningModel's segments are not walked.
//  - A settings document names its parameters; the tool lists the
//    Parameter, MatrixParmeter and ComplexParameter children of each scope in
//    document order and asks the reader for each name once (the reader
//    answers the first of several of one name).
//  - A failed ParseToDOM prints nothing on standard output. A part that the
//    reader refuses (a field, a statistics element, a role or a parameter)
//    is listed under "problems" and on standard error, the rest is shown, and
//    the exit status is 1. An absent role (120) and a parameter without a
//    value (123) are no problems: they show as empty, and without "value".
#include "zrx.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRVarList.h>

#include <xercesc/dom/DOMElement.hpp>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iostream>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace zrx {
namespace {

using Json = nlohmann::ordered_json;
using xercesc::DOMElement;
using ZRMTD_NAMESPACE::IZREncoder;
using ZRMTD_NAMESPACE::IZRVariable;
using ZRXPrsUtil::ZRSettingsParser;

// ------------------------------------------------------------ gathering

struct Problems {
    Json list = Json::array();
    void Add(const std::string& where, const ZRCommon::ZRStatus& status)
    {
        list.push_back(Json{{"where", where},
                            {"status", status.GetCode()},
                            {"meaning", StatusMeaning(status.GetCode())}});
    }
};

// A number, or null for the missing value and for the open ends (the lowest
// and highest finite doubles).
Json NumberJson(double value)
{
    if (ZRMV::IsMissing(value) || value != value ||
        value == std::numeric_limits<double>::lowest() ||
        value == std::numeric_limits<double>::max())
        return nullptr;
    return value;
}

Json NumbersJson(const std::vector<double>& values)
{
    Json list = Json::array();
    for (double value : values)
        list.push_back(NumberJson(value));
    return list;
}

const char* KindName(int type)
{
    switch (type) {
    case IZRVariable::eContinuous: return "continuous";
    case IZRVariable::eCategoricalNumeric: return "categorical-numeric";
    case IZRVariable::eCategoricalString: return "categorical-string";
    default: return "unknown";
    }
}

Json StorageJson(int code)
{
    static const char* const names[] = {"integer", "real", "string", "date", "time", "timestamp"};
    if (code >= 1 && code <= 6)
        return names[code - 1];
    return nullptr;
}

const char* RoleName(int role)
{
    switch (role) {
    case IZRVariable::eRoleTarget: return "target";
    case IZRVariable::eRoleFreqWeight: return "weight";
    case IZRVariable::eRoleInput: return "input";
    case IZRVariable::eRoleAltInput: return "alternate-input";
    default: return "none";
    }
}

Json FieldJson(const IZRVariable& variable)
{
    const IZREncoder& encoder = *variable.GetEncoder();
    const int type = variable.GetVarType();
    Json field;
    field["name"] = variable.GetName();
    field["label"] = variable.GetLabel();
    field["kind"] = KindName(type);
    field["storage"] = StorageJson(variable.GetValueFormat());
    field["role"] = RoleName(variable.GetRole());
    if (type == IZRVariable::eContinuous)
        field["range"] = Json{{"min", NumberJson(variable.GetMinimum())},
                              {"max", NumberJson(variable.GetMaximum())}};
    Json values = Json::array();
    const std::vector<std::string>& labels = encoder.GetValueLabels();
    const int count = encoder.GetNValues();
    for (int i = 0; i < count; ++i) {
        Json value;
        if (type == IZRVariable::eCategoricalNumeric &&
            static_cast<std::size_t>(i) < encoder.GetNumericValues().size())
            value["value"] = NumberJson(encoder.GetNumericValues()[i]);
        else
            value["value"] = encoder.GetValueText(i);
        if (static_cast<std::size_t>(i) < labels.size())
            value["label"] = labels[i];
        values.push_back(std::move(value));
    }
    field["values"] = std::move(values);
    Json missing = Json::array();
    for (const auto& [value, label] : encoder.GetNumericMissing())
        missing.push_back(Json{{"value", NumberJson(value)}, {"label", label}});
    for (const auto& [value, label] : encoder.GetStringMissing())
        missing.push_back(Json{{"value", value}, {"label", label}});
    field["missing"] = std::move(missing);
    field["invalidRange"] = encoder.HasMissingRange()
                                ? Json{{"lower", NumberJson(encoder.GetMissingRangeLower())},
                                       {"upper", NumberJson(encoder.GetMissingRangeUpper())}}
                                : Json(nullptr);
    if (!variable.GetCutPoints().empty() || !encoder.GetBinLabels().empty())
        field["bins"] = Json{{"cutPoints", NumbersJson(variable.GetCutPoints())},
                             {"labels", encoder.GetBinLabels()}};
    return field;
}

Json FieldsJson(const ZRMTD_NAMESPACE::ZRVarList& list, std::size_t from, std::size_t to)
{
    Json fields = Json::array();
    for (std::size_t i = from; i < to; ++i)
        if (const IZRVariable* variable = list.GetVarAt(static_cast<int>(i)))
            fields.push_back(FieldJson(*variable));
    return fields;
}

std::string AttributeText(const DOMElement& element, const char* name)
{
    const XMLCh* value = ZRXPrsUtil::GetAttribute(element, name);
    return value != nullptr ? ZRXPrsUtil::ToUTF8(value) : std::string();
}

Json AttributeJson(const DOMElement& element, const char* name)
{
    const XMLCh* value = ZRXPrsUtil::GetAttribute(element, name);
    return value != nullptr ? Json(ZRXPrsUtil::ToUTF8(value)) : Json(nullptr);
}

bool IsModelTag(const std::string& tag)
{
    static const std::set<std::string> models = {"AnomalyDetectionModel",
                                                 "AssociationModel",
                                                 "BaselineModel",
                                                 "BayesianNetworkModel",
                                                 "ClusteringModel",
                                                 "GaussianProcessModel",
                                                 "GeneralRegressionModel",
                                                 "MiningModel",
                                                 "NaiveBayesModel",
                                                 "NearestNeighborModel",
                                                 "NeuralNetwork",
                                                 "RegressionModel",
                                                 "RuleSetModel",
                                                 "Scorecard",
                                                 "SequenceModel",
                                                 "SupportVectorMachineModel",
                                                 "TextModel",
                                                 "TimeSeriesModel",
                                                 "TreeModel"};
    return models.count(tag) > 0;
}

Json StatsJson(const ZRMTD_NAMESPACE::ZRUniStats& stats)
{
    Json item;
    item["field"] = stats.GetFieldName();
    item["kind"] = stats.IsContinuous() ? "continuous" : "discrete";
    item["totalFreq"] = NumberJson(stats.GetTotalFreq());
    if (stats.IsContinuous()) {
        const ZRMTD_NAMESPACE::ZRUniStats::SummStats& summary = stats.GetSummStats();
        item["summary"] = Json{{"minimum", NumberJson(summary.minimum)},
                               {"maximum", NumberJson(summary.maximum)},
                               {"mean", NumberJson(summary.mean)},
                               {"stdDev", NumberJson(summary.stdDev)}};
        item["cutPoints"] = NumbersJson(stats.GetCutPoints());
    }
    item["frequencies"] = NumbersJson(stats.GetFrequencies());
    return item;
}

Json ModelsJson(ZRXPrsUtil::ZRPMMLParser& reader, Problems& problems)
{
    Json models = Json::array();
    const DOMElement* root = reader.GetRootElement();
    if (root == nullptr)
        return models;
    std::size_t index = 0;
    for (const DOMElement* model = ZRXPrsUtil::GetFirstChildElmt(*root, nullptr); model;
         model = ZRXPrsUtil::GetNextSiblingElmt(*model, nullptr)) {
        const std::string tag = ZRXPrsUtil::ToUTF8(model->getTagName());
        if (!IsModelTag(tag))
            continue;
        ++index;
        Json entry;
        entry["element"] = tag;
        entry["modelName"] = AttributeJson(*model, "modelName");
        entry["functionName"] = AttributeJson(*model, "functionName");
        Json statistics = Json::array();
        const std::string where = "model " + std::to_string(index) + " (" + tag + ")";
        if (!reader.SetModelElmt(*model)) {
            problems.Add(where, reader.GetStatus());
        } else {
            ZRMTD_NAMESPACE::ZRUniStats stats;
            const DOMElement* position = nullptr;
            std::size_t item = 0;
            do {
                const ZRCommon::ZRStatus status = reader.FillUniStats(stats, position);
                if (position == nullptr) {
                    if (!status.IsOK())
                        problems.Add(where + " statistics", status);
                    break;
                }
                ++item;
                if (status.IsOK())
                    statistics.push_back(StatsJson(stats));
                else
                    problems.Add(where + " statistics " + std::to_string(item) + " (field \"" +
                                     AttributeText(*position, "field") + "\")",
                                 status);
            } while (position != nullptr);
        }
        entry["statistics"] = std::move(statistics);
        models.push_back(std::move(entry));
    }
    return models;
}

// ------------------------------------------------------------- settings

Json RolesJson(const ZRSettingsParser& reader, Problems& problems)
{
    using ListQuery = ZRCommon::ZRStatus (ZRSettingsParser::*)(std::vector<std::string>&) const;
    const std::pair<const char*, ListQuery> lists[] = {
        {"targets", &ZRSettingsParser::GetTargetVars},
        {"predictors", &ZRSettingsParser::GetPredictors},
        {"categoricalPredictors", &ZRSettingsParser::GetCatPredictors},
        {"continuousPredictors", &ZRSettingsParser::GetContPredictors},
        {"categoricalResponses", &ZRSettingsParser::GetCatResponseVars},
        {"continuousResponses", &ZRSettingsParser::GetContResponseVars},
    };
    Json roles;
    for (const auto& [key, query] : lists) {
        std::vector<std::string> names;
        const ZRCommon::ZRStatus status = (reader.*query)(names);
        if (!status.IsOK() && status.GetCode() != ZRCommon::eNoSuchParameter)
            problems.Add(std::string("role ") + key, status);
        roles[key] = names;
    }
    std::string weight;
    const ZRCommon::ZRStatus status = reader.GetFrequencyWeight(weight);
    if (!status.IsOK() && status.GetCode() != ZRCommon::eNoSuchParameter)
        problems.Add("role frequencyWeight", status);
    roles["frequencyWeight"] = status.IsOK() ? Json(weight) : Json(nullptr);
    return roles;
}

Json TypeJson(ZRSettingsParser::ParamType type)
{
    switch (type) {
    case ZRSettingsParser::ParamTypeString: return "string";
    case ZRSettingsParser::ParamTypeDouble: return "double";
    case ZRSettingsParser::ParamTypeInteger: return "integer";
    case ZRSettingsParser::ParamTypeBoolean: return "boolean";
    case ZRSettingsParser::ParamTypeEnum: return "enum";
    case ZRSettingsParser::ParamTypeFieldName: return "fieldName";
    default: return nullptr;
    }
}

// The value of a Parameter that holds one, read by the form of its type. A
// typed form that refuses the text leaves the text in place, with a problem.
Json ScalarJson(ZRSettingsParser& reader, const char* name, void* context,
                ZRSettingsParser::ParamType type, const std::string& text, const std::string& where,
                Problems& problems)
{
    ZRCommon::ZRStatus status;
    Json value = text;
    switch (type) {
    case ZRSettingsParser::ParamTypeInteger: {
        int number = 0;
        status = reader.GetParameter(name, number, context);
        if (status.IsOK())
            value = number;
        break;
    }
    case ZRSettingsParser::ParamTypeDouble: {
        double number = 0.0;
        status = reader.GetParameter(name, number, context);
        if (status.IsOK())
            value = NumberJson(number);
        break;
    }
    case ZRSettingsParser::ParamTypeBoolean: {
        bool flag = false;
        status = reader.GetParameter(name, flag, context);
        if (status.IsOK())
            value = flag;
        break;
    }
    default: break;
    }
    if (!status.IsOK())
        problems.Add(where, status);
    return value;
}

Json ListJson(ZRSettingsParser& reader, const char* name, void* context,
              ZRSettingsParser::ParamType type, const std::string& where, Problems& problems)
{
    ZRCommon::ZRStatus status;
    Json values = Json::array();
    if (type == ZRSettingsParser::ParamTypeDouble) {
        std::vector<double> items;
        status = reader.GetArray(name, items, context);
        values = NumbersJson(items);
    } else if (type == ZRSettingsParser::ParamTypeInteger) {
        std::vector<int> items;
        status = reader.GetArray(name, items, context);
        values = items;
    } else {
        std::vector<std::string> items;
        status = reader.GetArray(name, items, context);
        values = items;
    }
    if (!status.IsOK() && status.GetCode() != ZRCommon::eNoValue)
        problems.Add(where, status);
    return values;
}

Json MatrixJson(ZRSettingsParser& reader, const char* name, void* context, const std::string& where,
                Problems& problems)
{
    std::vector<std::vector<std::string>> texts;
    const ZRCommon::ZRStatus status = reader.GetMatrix(name, texts, context);
    if (!status.IsOK()) {
        problems.Add(where, status);
        return Json::array();
    }
    // Numbers when every item reads as one, else the texts.
    std::vector<std::vector<double>> numbers;
    reader.GetMatrix(name, numbers, context);
    bool numeric = numbers.size() == texts.size();
    for (std::size_t i = 0; numeric && i < texts.size(); ++i)
        numeric = numbers[i].size() == texts[i].size();
    Json rows = Json::array();
    for (std::size_t i = 0; i < texts.size(); ++i)
        rows.push_back(numeric ? NumbersJson(numbers[i]) : Json(texts[i]));
    return rows;
}

Json ParametersJson(ZRSettingsParser& reader, const DOMElement& scope, void* context,
                    const std::string& path, Problems& problems)
{
    Json parameters = Json::array();
    std::set<std::pair<std::string, std::string>> seen;
    for (const DOMElement* child = ZRXPrsUtil::GetFirstChildElmt(scope, nullptr); child;
         child = ZRXPrsUtil::GetNextSiblingElmt(*child, nullptr)) {
        const std::string tag = ZRXPrsUtil::ToUTF8(child->getTagName());
        if (tag != "Parameter" && tag != "ComplexParameter" && tag != "MatrixParmeter")
            continue;
        const XMLCh* nameAttribute = ZRXPrsUtil::GetAttribute(*child, "name");
        if (nameAttribute == nullptr)
            continue;
        const std::string name = ZRXPrsUtil::ToUTF8(nameAttribute);
        if (!seen.insert({tag, name}).second)
            continue;
        const std::string where = "parameter " + path + name;
        Json entry;
        entry["name"] = name;
        if (tag == "ComplexParameter") {
            entry["kind"] = "group";
            void* group = reader.GetComplexParameter(name.c_str(), context);
            entry["parameters"] = group != nullptr ? ParametersJson(reader, *child, group,
                                                                    path + name + "/", problems)
                                                   : Json::array();
        } else if (tag == "MatrixParmeter") {
            entry["kind"] = "matrix";
            entry["rows"] = MatrixJson(reader, name.c_str(), context, where, problems);
        } else {
            const ZRSettingsParser::ParamType type = reader.GetParameterType(name.c_str(), context);
            entry["type"] = TypeJson(type);
            std::string text;
            const ZRCommon::ZRStatus status = reader.GetParameter(name.c_str(), text, context);
            if (status.GetCode() == ZRCommon::eIsList) {
                entry["kind"] = "list";
                entry["values"] = ListJson(reader, name.c_str(), context, type, where, problems);
            } else {
                entry["kind"] = "value";
                if (status.IsOK())
                    entry["value"] =
                        ScalarJson(reader, name.c_str(), context, type, text, where, problems);
                else if (status.GetCode() != ZRCommon::eNoValue)
                    problems.Add(where, status);
            }
        }
        parameters.push_back(std::move(entry));
    }
    return parameters;
}

const DOMElement* ParametersElement(const DOMElement* root)
{
    const DOMElement* task =
        root ? ZRXPrsUtil::GetFirstChildElmt(*root, "MiningBuildTask") : nullptr;
    const DOMElement* extension =
        task ? ZRXPrsUtil::GetFirstChildElmt(*task, "Extension") : nullptr;
    return extension ? ZRXPrsUtil::GetFirstChildElmt(*extension, "Parameters") : nullptr;
}

// The tag of the document element as written, found by a light scan past the
// prolog; empty if there is none to be seen. Only chooses the reader: the
// reader itself checks the document.
std::string RootTag(const std::string& text)
{
    std::size_t at = 0;
    while ((at = text.find('<', at)) != std::string::npos) {
        if (text.compare(at, 4, "<!--") == 0) {
            const std::size_t end = text.find("-->", at + 4);
            if (end == std::string::npos)
                return std::string();
            at = end + 3;
        } else if (text.compare(at, 2, "<?") == 0 || text.compare(at, 2, "<!") == 0) {
            // Declarations and processing instructions; a DOCTYPE's internal
            // subset ends with "]>".
            const std::size_t bracket = text.find('[', at);
            const std::size_t close = text.find('>', at);
            if (close == std::string::npos)
                return std::string();
            if (text.compare(at, 9, "<!DOCTYPE") == 0 && bracket != std::string::npos &&
                bracket < close) {
                const std::size_t end = text.find("]>", bracket);
                if (end == std::string::npos)
                    return std::string();
                at = end + 2;
            } else {
                at = close + 1;
            }
        } else {
            const std::size_t end = text.find_first_of(" \t\r\n/>", at + 1);
            return text.substr(at + 1, end == std::string::npos ? std::string::npos : end - at - 1);
        }
    }
    return std::string();
}

// ---------------------------------------------------------------- text form

std::size_t Width(const std::string& text)
{
    std::size_t chars = 0;
    for (unsigned char c : text)
        chars += (c & 0xC0) != 0x80;
    return chars;
}

void PrintTable(const std::vector<std::vector<std::string>>& rows, std::ostream& out)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths.push_back(0);
            widths[i] = std::max(widths[i], Width(row[i]));
        }
    for (const auto& row : rows) {
        std::string line = "  ";
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size())
                line += std::string(widths[i] - Width(row[i]) + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << "\n";
    }
}

std::string Text(const Json& value)
{
    if (value.is_null())
        return "-";
    if (value.is_string())
        return value.get<std::string>();
    if (value.is_boolean())
        return value.get<bool>() ? "true" : "false";
    if (value.is_number_integer())
        return std::to_string(value.get<long long>());
    if (value.is_number())
        return NumberText(value.get<double>());
    if (value.is_array()) {
        std::string text;
        for (const Json& item : value)
            text += (text.empty() ? "" : ", ") + Text(item);
        return text;
    }
    return value.dump();
}

std::string Bound(const Json& value, const char* open)
{
    return value.is_null() ? std::string(open) : Text(value);
}

// At most this many values or missing values in one table cell.
constexpr std::size_t kCellItems = 8;

std::string ValuesCell(const Json& items)
{
    std::string text;
    std::size_t shown = 0;
    for (const Json& item : items) {
        if (shown == kCellItems) {
            text += ", ... (" + std::to_string(items.size()) + ")";
            break;
        }
        const Json& value = item["value"];
        text += shown++ == 0 ? "" : ", ";
        text += value.is_null() ? "NaN" : value == "" ? "\"\"" : Text(value);
        if (item.contains("label") && !item["label"].get<std::string>().empty())
            text += "=" + item["label"].get<std::string>();
    }
    return text;
}

void PrintFields(const Json& fields, std::ostream& out)
{
    std::vector<std::vector<std::string>> rows = {
        {"name", "label", "kind", "storage", "role", "range", "values", "missing"}};
    for (const Json& field : fields) {
        std::string range;
        if (field.contains("range"))
            range = "[" + Bound(field["range"]["min"], "*") + ", " +
                    Bound(field["range"]["max"], "*") + "]";
        std::string missing = ValuesCell(field["missing"]);
        if (!field["invalidRange"].is_null())
            missing += (missing.empty() ? "" : "; ") + std::string("invalid [") +
                       Bound(field["invalidRange"]["lower"], "*") + ", " +
                       Bound(field["invalidRange"]["upper"], "*") + "]";
        rows.push_back({field["name"], field["label"], field["kind"], Text(field["storage"]),
                        field["role"], range, ValuesCell(field["values"]), missing});
    }
    PrintTable(rows, out);
}

void PrintModels(const Json& models, std::ostream& out)
{
    for (const Json& model : models) {
        out << "model " << model["element"].get<std::string>();
        if (!model["modelName"].is_null())
            out << " \"" << model["modelName"].get<std::string>() << "\"";
        if (!model["functionName"].is_null())
            out << " (" << model["functionName"].get<std::string>() << ")";
        out << ": " << model["statistics"].size() << " univariate statistics\n";
        if (model["statistics"].empty())
            continue;
        std::vector<std::vector<std::string>> rows = {
            {"field", "kind", "total", "min", "max", "mean", "sd", "frequencies"}};
        for (const Json& item : model["statistics"]) {
            std::vector<std::string> row = {item["field"], item["kind"], Text(item["totalFreq"])};
            if (item.contains("summary"))
                for (const char* key : {"minimum", "maximum", "mean", "stdDev"})
                    row.push_back(Text(item["summary"][key]));
            else
                row.insert(row.end(), 4, "");
            std::string frequencies = Text(item["frequencies"]);
            if (item.contains("cutPoints") && !item["cutPoints"].empty())
                frequencies += " at cuts " + Text(item["cutPoints"]);
            row.push_back(frequencies);
            rows.push_back(std::move(row));
        }
        PrintTable(rows, out);
    }
}

void PrintParameters(const Json& parameters, const std::string& indent, std::ostream& out)
{
    for (const Json& parameter : parameters) {
        out << indent << parameter["name"].get<std::string>() << ": ";
        const std::string kind = parameter["kind"];
        if (kind == "group") {
            out << "group\n";
            PrintParameters(parameter["parameters"], indent + "  ", out);
            continue;
        }
        if (kind == "matrix") {
            out << "matrix";
            for (const Json& row : parameter["rows"])
                out << " [" << Text(row) << "]";
        } else {
            if (!parameter["type"].is_null())
                out << parameter["type"].get<std::string>() << " ";
            if (kind == "list")
                out << "list [" << Text(parameter["values"]) << "]";
            else if (!parameter.contains("value"))
                out << "(no value)";
            else if (parameter["value"].is_null())
                out << "NaN";
            else if (parameter["value"].is_string())
                out << "\"" << parameter["value"].get<std::string>() << "\"";
            else
                out << Text(parameter["value"]);
        }
        out << "\n";
    }
}

void PrintText(const Json& doc, std::ostream& out)
{
    out << doc["file"].get<std::string>() << ": " << doc["kind"].get<std::string>();
    if (doc.contains("version"))
        out << " " << Text(doc["version"]);
    out << ", " << doc["fields"].size() << " fields";
    if (doc.contains("derivedFields"))
        out << ", " << doc["derivedFields"].size() << " derived fields";
    out << "\n";
    PrintFields(doc["fields"], out);
    if (doc.contains("derivedFields") && !doc["derivedFields"].empty()) {
        out << "derived fields\n";
        PrintFields(doc["derivedFields"], out);
    }
    if (doc.contains("models"))
        PrintModels(doc["models"], out);
    if (doc.contains("roles")) {
        out << "roles\n";
        std::vector<std::vector<std::string>> rows;
        for (const auto& [key, value] : doc["roles"].items())
            rows.push_back({key, Text(value)});
        PrintTable(rows, out);
    }
    if (doc.contains("parameters")) {
        out << "parameters\n";
        PrintParameters(doc["parameters"], "  ", out);
    }
}

int Fail(const std::string& file, const ZRCommon::ZRStatus& status, const std::string& message)
{
    std::cerr << "zrx inspect: " << file << ": status " << status.GetCode() << ": "
              << StatusMeaning(status.GetCode());
    if (!message.empty())
        std::cerr << ": " << message;
    std::cerr << "\n";
    return kExitFailed;
}

} // namespace

int RunInspect(const InspectOptions& options)
{
    std::string text;
    std::string error;
    if (!ReadInput(options.file, text, error)) {
        std::cerr << "zrx inspect: " << options.file << ": " << error << "\n";
        return kExitFailed;
    }

    Json doc;
    doc["file"] = options.file;
    Problems problems;
    ZRMTD_NAMESPACE::ZRVarList variables;
    if (RootTag(text) == "DataModel") {
        ZRXPrsUtil::ZRDataModelParser reader;
        ZRCommon::ZRStatus status = reader.ParseToDOM(text);
        if (!status.IsOK())
            return Fail(options.file, status, "");
        doc["kind"] = "DataModel";
        status = reader.FillVarList(variables, false, false, 0);
        if (!status.IsOK())
            problems.Add("field " + std::to_string(variables.Size() + 1), status);
        doc["fields"] = FieldsJson(variables, 0, variables.Size());
    } else {
        ZRXPrsUtil::ZRPMMLParser reader;
        std::istringstream stream(text);
        ZRCommon::ZRStatus status = reader.ParseToDOM(stream);
        if (!status.IsOK())
            return Fail(options.file, status, reader.GetXercesMessage());
        if (ParametersElement(reader.GetRootElement()) == nullptr) {
            doc["kind"] = "PMML";
            doc["version"] = AttributeJson(*reader.GetRootElement(), "version");
            status = reader.FillVarList(variables, {}, false);
            if (!status.IsOK())
                problems.Add("field " + std::to_string(variables.Size() + 1), status);
            doc["fields"] = FieldsJson(variables, 0, variables.Size());
            doc["models"] = ModelsJson(reader, problems);
        } else {
            ZRSettingsParser settings;
            std::istringstream again(text);
            status = settings.ParseToDOM(again);
            if (!status.IsOK())
                return Fail(options.file, status, settings.GetXercesMessage());
            doc["kind"] = "settings";
            doc["version"] = AttributeJson(*settings.GetRootElement(), "version");
            status = settings.FillVarList(variables, false);
            const std::size_t fields = variables.Size();
            if (!status.IsOK())
                problems.Add("field " + std::to_string(fields + 1), status);
            else if (!(status = settings.FillTransDict(variables)).IsOK())
                problems.Add("derived field " + std::to_string(variables.Size() - fields + 1),
                             status);
            doc["fields"] = FieldsJson(variables, 0, fields);
            doc["derivedFields"] = FieldsJson(variables, fields, variables.Size());
            doc["roles"] = RolesJson(settings, problems);
            doc["parameters"] = ParametersJson(
                settings, *ParametersElement(settings.GetRootElement()), nullptr, "", problems);
        }
    }
    doc["problems"] = problems.list;

    if (options.json)
        std::cout << doc.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
    else
        PrintText(doc, std::cout);
    for (const Json& problem : problems.list)
        std::cerr << "zrx inspect: " << options.file << ": " << problem["where"].get<std::string>()
                  << ": status " << problem["status"].get<long>() << ": "
                  << problem["meaning"].get<std::string>() << "\n";
    std::cout.flush();
    return problems.list.empty() ? kExitOK : kExitFailed;
}

} // namespace zrx
