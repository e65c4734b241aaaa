// zrx inspect: what the library's readers read from one document, as tables
// or as one JSON document. The document is read once; the output is then
// written part by part as it is gathered (each field from the variable list
// as it is printed), so that a dictionary of a million fields needs no more
// than the readers' own memory. Both forms are made from the same values, so
// that they always say the same.
//
// Decisions:
//  - The kind comes from the document element, which the library reads
//    (GetDocumentElementTag): "DataModel" is read by the DataModel reader;
//    anything else by the settings reader with Parameters not required, so
//    that a PMML document is read once whether or not it carries settings:
//    with MiningBuildTask/Extension/Parameters (GetParametersElement) it is
//    shown as settings, without as PMML, through the PMML reader's own
//    FillVarList. A root other than PMML is refused by the reader (105).
//  - The readers keep the fields out of the DOM and leave the bodies of the
//    models out: the tool uses the fields only through FillVarList and of a
//    model only its attributes and statistics, which are kept.
//  - Statistics are read for the models directly under PMML, in document
//    order; models nested in a MiningModel's segments are not walked.
//  - A settings document names its parameters; the tool lists the
//    Parameter, MatrixParmeter and ComplexParameter children of each scope in
//    document order and asks the reader for each name once (the reader
//    answers the first of several of one name).
//  - A document that can't be read (a failed ParseToDOM, a file that can't
//    be opened) prints nothing on standard output and exits 1. A document
//    that is read exits 0: a part that the reader refuses (a field, a
//    statistics element, a role or a parameter) is listed under "problems"
//    and on standard error, and the rest is shown. An absent role (120) and
//    a parameter without a value (123) are no problems: they show as empty,
//    and without "value".
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
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <limits>
#include <set>
#include <sstream>
#include <system_error>
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

// A number that is shown as one: not the missing value, nor an open end.
bool IsShownNumber(double value)
{
    return !(ZRMV::IsMissing(value) || value != value ||
             value == std::numeric_limits<double>::lowest() ||
             value == std::numeric_limits<double>::max());
}

// Calls visit(number, text, label) for each value of the variable: a numeric
// categorical value comes as `number`, any other as `text` (number null);
// `label` is null when the value has none.
template <typename Visit>
void ForEachValue(const IZRVariable& variable, Visit visit)
{
    const IZREncoder& encoder = *variable.GetEncoder();
    const bool numeric = variable.GetVarType() == IZRVariable::eCategoricalNumeric;
    const std::vector<double>& numbers = encoder.GetNumericValues();
    const std::vector<std::string>& labels = encoder.GetValueLabels();
    const int count = encoder.GetNValues();
    for (int i = 0; i < count; ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        const double* number = numeric && at < numbers.size() ? &numbers[at] : nullptr;
        visit(number, number ? std::string() : encoder.GetValueText(i),
              at < labels.size() ? &labels[at] : nullptr);
    }
}

// The same for the missing values, numeric ones first; each has a label.
template <typename Visit>
void ForEachMissing(const IZRVariable& variable, Visit visit)
{
    const IZREncoder& encoder = *variable.GetEncoder();
    for (const auto& [value, label] : encoder.GetNumericMissing())
        visit(&value, std::string(), &label);
    for (const auto& [value, label] : encoder.GetStringMissing())
        visit(nullptr, value, &label);
}

// Appends JSON text as nlohmann's dump(2) lays it out, value by value, to a
// string: a document of a million fields is written without a tree of it.
// `indent` is the indentation of the line where the first value starts.
class JsonText {
public:
    JsonText(std::string& out, std::size_t indent) : m_out(out), m_indent(indent) {}
    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    void Key(const char* key)
    {
        Next();
        m_out += '"';
        m_out += key;
        m_out += "\": ";
        m_keyed = true;
    }
    void String(const std::string& text)
    {
        Next();
        AppendString(text);
    }
    // A number, or null where IsShownNumber says no.
    void Number(double value)
    {
        Next();
        m_out += IsShownNumber(value) ? Json(value).dump() : "null";
    }
    void Null()
    {
        Next();
        m_out += "null";
    }

private:
    void Next()
    {
        if (m_keyed) {
            m_keyed = false;
            return;
        }
        if (m_counts.empty())
            return;
        m_out += m_counts.back()++ > 0 ? ",\n" : "\n";
        m_out.append(m_indent + 2 * m_counts.size(), ' ');
    }
    void Open(char bracket)
    {
        Next();
        m_out += bracket;
        m_counts.push_back(0);
    }
    void Close(char bracket)
    {
        const std::size_t count = m_counts.back();
        m_counts.pop_back();
        if (count > 0) {
            m_out += '\n';
            m_out.append(m_indent + 2 * m_counts.size(), ' ');
        }
        m_out += bracket;
    }
    // As nlohmann escapes a string; text that is not UTF-8 goes to nlohmann
    // itself, which replaces what it can't read.
    void AppendString(const std::string& text)
    {
        static const char* const kHex = "0123456789abcdef";
        if (!IsUTF8(text)) {
            m_out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
            return;
        }
        m_out += '"';
        std::size_t from = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const unsigned char byte = static_cast<unsigned char>(text[i]);
            if (byte >= 0x20 && byte != '"' && byte != '\\')
                continue;
            m_out.append(text, from, i - from);
            from = i + 1;
            switch (byte) {
            case '"': m_out += "\\\""; break;
            case '\\': m_out += "\\\\"; break;
            case '\b': m_out += "\\b"; break;
            case '\f': m_out += "\\f"; break;
            case '\n': m_out += "\\n"; break;
            case '\r': m_out += "\\r"; break;
            case '\t': m_out += "\\t"; break;
            default:
                m_out += "\\u00";
                m_out += kHex[byte >> 4];
                m_out += kHex[byte & 0xF];
            }
        }
        m_out.append(text, from, text.size() - from);
        m_out += '"';
    }
    static bool IsUTF8(const std::string& text)
    {
        for (std::size_t i = 0; i < text.size();) {
            const unsigned char lead = static_cast<unsigned char>(text[i]);
            std::size_t length = lead < 0x80                   ? 1
                                 : lead >= 0xC2 && lead < 0xE0 ? 2
                                 : lead >= 0xE0 && lead < 0xF0 ? 3
                                 : lead >= 0xF0 && lead < 0xF5 ? 4
                                                               : 0;
            if (length == 0 || i + length > text.size())
                return false;
            for (std::size_t k = 1; k < length; ++k)
                if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                    return false;
            const unsigned char second = length > 1 ? static_cast<unsigned char>(text[i + 1]) : 0;
            if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90))
                return false;
            i += length;
        }
        return true;
    }

    std::string& m_out;
    const std::size_t m_indent;
    std::vector<std::size_t> m_counts; // items of each open object or array
    bool m_keyed = false;              // a key was written, its value comes
};

// One variable in the JSON form.
void WriteField(JsonText& json, const IZRVariable& variable)
{
    const IZREncoder& encoder = *variable.GetEncoder();
    const int type = variable.GetVarType();
    json.BeginObject();
    json.Key("name");
    json.String(variable.GetName());
    json.Key("label");
    json.String(variable.GetLabel());
    json.Key("kind");
    json.String(KindName(type));
    json.Key("storage");
    const Json storage = StorageJson(variable.GetValueFormat());
    storage.is_null() ? json.Null() : json.String(storage.get<std::string>());
    json.Key("role");
    json.String(RoleName(variable.GetRole()));
    if (type == IZRVariable::eContinuous) {
        json.Key("range");
        json.BeginObject();
        json.Key("min");
        json.Number(variable.GetMinimum());
        json.Key("max");
        json.Number(variable.GetMaximum());
        json.EndObject();
    }
    const auto item = [&json](const double* number, const std::string& text,
                              const std::string* label) {
        json.BeginObject();
        json.Key("value");
        number ? json.Number(*number) : json.String(text);
        if (label) {
            json.Key("label");
            json.String(*label);
        }
        json.EndObject();
    };
    json.Key("values");
    json.BeginArray();
    ForEachValue(variable, item);
    json.EndArray();
    json.Key("missing");
    json.BeginArray();
    ForEachMissing(variable, item);
    json.EndArray();
    json.Key("invalidRange");
    if (encoder.HasMissingRange()) {
        json.BeginObject();
        json.Key("lower");
        json.Number(encoder.GetMissingRangeLower());
        json.Key("upper");
        json.Number(encoder.GetMissingRangeUpper());
        json.EndObject();
    } else {
        json.Null();
    }
    if (!variable.GetCutPoints().empty() || !encoder.GetBinLabels().empty()) {
        json.Key("bins");
        json.BeginObject();
        json.Key("cutPoints");
        json.BeginArray();
        for (double cut : variable.GetCutPoints())
            json.Number(cut);
        json.EndArray();
        json.Key("labels");
        json.BeginArray();
        for (const std::string& label : encoder.GetBinLabels())
            json.String(label);
        json.EndArray();
        json.EndObject();
    }
    json.EndObject();
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
        if (!ZRXPrsUtil::IsPMMLModelTag(tag))
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

// ---------------------------------------------------------------- text form

std::size_t Width(const std::string& text)
{
    std::size_t chars = 0;
    for (unsigned char c : text)
        chars += (c & 0xC0) != 0x80;
    return chars;
}

void Widen(std::vector<std::size_t>& widths, const std::vector<std::string>& row)
{
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (widths.size() <= i)
            widths.push_back(0);
        widths[i] = std::max(widths[i], Width(row[i]));
    }
}

void PrintRow(const std::vector<std::string>& row, const std::vector<std::size_t>& widths,
              std::ostream& out)
{
    std::string line = "  ";
    for (std::size_t i = 0; i < row.size(); ++i) {
        line += row[i];
        if (i + 1 < row.size())
            line += std::string(widths[i] - Width(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << "\n";
}

void PrintTable(const std::vector<std::vector<std::string>>& rows, std::ostream& out)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows)
        Widen(widths, row);
    for (const auto& row : rows)
        PrintRow(row, widths, out);
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

// At most this many values or missing values in one table cell.
constexpr std::size_t kCellItems = 8;

// A shown number as text: "*" for an open end (`open`), "NaN" for the
// missing value.
std::string NumberCell(double value, const char* open)
{
    return IsShownNumber(value) ? NumberText(value) : open;
}

// At most kCellItems values or missing values, as "value=label".
class ValuesCell {
public:
    void operator()(const double* number, const std::string& text, const std::string* label)
    {
        ++m_count;
        if (m_shown == kCellItems)
            return;
        m_text += m_shown++ == 0 ? "" : ", ";
        m_text += number ? NumberCell(*number, "NaN") : text.empty() ? "\"\"" : text;
        if (label && !label->empty())
            m_text += "=" + *label;
    }
    std::string Text() const
    {
        return m_count > m_shown ? m_text + ", ... (" + std::to_string(m_count) + ")" : m_text;
    }

private:
    std::string m_text;
    std::size_t m_shown = 0;
    std::size_t m_count = 0;
};

std::vector<std::string> FieldRow(const IZRVariable& variable)
{
    const IZREncoder& encoder = *variable.GetEncoder();
    std::string range;
    if (variable.GetVarType() == IZRVariable::eContinuous)
        range = "[" + NumberCell(variable.GetMinimum(), "*") + ", " +
                NumberCell(variable.GetMaximum(), "*") + "]";
    ValuesCell values;
    ForEachValue(variable, std::ref(values));
    ValuesCell missingValues;
    ForEachMissing(variable, std::ref(missingValues));
    std::string missing = missingValues.Text();
    if (encoder.HasMissingRange())
        missing += (missing.empty() ? "" : "; ") + std::string("invalid [") +
                   NumberCell(encoder.GetMissingRangeLower(), "*") + ", " +
                   NumberCell(encoder.GetMissingRangeUpper(), "*") + "]";
    return {variable.GetName(),
            variable.GetLabel(),
            KindName(variable.GetVarType()),
            Text(StorageJson(variable.GetValueFormat())),
            RoleName(variable.GetRole()),
            range,
            values.Text(),
            missing};
}

// The variables from `from` to `to` as one table, straight from the list:
// one pass for the widths of the columns, one to print.
void PrintFields(const ZRMTD_NAMESPACE::ZRVarList& list, std::size_t from, std::size_t to,
                 std::ostream& out)
{
    const std::vector<std::string> head = {"name", "label", "kind",   "storage",
                                           "role", "range", "values", "missing"};
    std::vector<std::size_t> widths;
    Widen(widths, head);
    for (std::size_t i = from; i < to; ++i)
        if (const IZRVariable* variable = list.GetVarAt(static_cast<int>(i)))
            Widen(widths, FieldRow(*variable));
    PrintRow(head, widths, out);
    for (std::size_t i = from; i < to; ++i)
        if (const IZRVariable* variable = list.GetVarAt(static_cast<int>(i)))
            PrintRow(FieldRow(*variable), widths, out);
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

void PrintRoles(const Json& roles, std::ostream& out)
{
    out << "roles\n";
    std::vector<std::vector<std::string>> rows;
    for (const auto& [key, value] : roles.items())
        rows.push_back({key, Text(value)});
    PrintTable(rows, out);
}

// The JSON form, written member by member as nlohmann's dump(2) lays out the
// whole document: a member's value is dumped alone and indented to its
// place (a dumped text holds no line break but those of its layout).
class JsonOutput {
public:
    explicit JsonOutput(std::ostream& out) : m_out(out) { m_out << "{"; }
    void Member(const char* key, const Json& value)
    {
        Key(key);
        Write(value, "\n  ");
    }
    void BeginArray(const char* key)
    {
        Key(key);
        m_out << "[";
        m_items = 0;
    }
    // An item written already in its place's layout.
    void Item(const std::string& text) { m_out << (m_items++ > 0 ? ",\n    " : "\n    ") << text; }
    void EndArray() { m_out << (m_items > 0 ? "\n  ]" : "]"); }
    void End() { m_out << "\n}\n"; }

private:
    void Key(const char* key)
    {
        m_out << (m_members++ > 0 ? ",\n  \"" : "\n  \"") << key << "\": ";
    }
    void Write(const Json& value, const char* lineStart)
    {
        const std::string text = value.dump(2, ' ', false, Json::error_handler_t::replace);
        std::size_t from = 0;
        for (std::size_t at = text.find('\n'); at != std::string::npos;
             from = at + 1, at = text.find('\n', from))
            m_out.write(text.data() + from, static_cast<std::streamsize>(at - from)) << lineStart;
        m_out.write(text.data() + from, static_cast<std::streamsize>(text.size() - from));
    }

    std::ostream& m_out;
    std::size_t m_members = 0;
    std::size_t m_items = 0;
};

// What one reading shows, in either form, part by part.
class Report {
public:
    Report(const InspectOptions& options, std::ostream& out) : m_options(options), m_out(out) {}
    ~Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    // The opening: the file, the kind, the PMML version (null: none given,
    // absent: not PMML), and the numbers of fields (derived: -1 for none).
    void Begin(const char* kind, const Json* version, std::size_t fields, long derived)
    {
        if (m_options.json) {
            m_json.reset(new JsonOutput(m_out));
            m_json->Member("file", m_options.file);
            m_json->Member("kind", kind);
            if (version)
                m_json->Member("version", *version);
            return;
        }
        m_out << m_options.file << ": " << kind;
        if (version)
            m_out << " " << Text(*version);
        m_out << ", " << fields << " fields";
        if (derived >= 0)
            m_out << ", " << derived << " derived fields";
        m_out << "\n";
    }
    void Fields(const char* key, const ZRMTD_NAMESPACE::ZRVarList& list, std::size_t from,
                std::size_t to)
    {
        if (m_json) {
            m_json->BeginArray(key);
            std::string text;
            for (std::size_t i = from; i < to; ++i)
                if (const IZRVariable* variable = list.GetVarAt(static_cast<int>(i))) {
                    JsonText json(text, 4);
                    WriteField(json, *variable);
                    m_json->Item(text);
                    text.clear();
                }
            m_json->EndArray();
            return;
        }
        const bool derived = std::string(key) == "derivedFields";
        if (derived && from == to)
            return;
        if (derived)
            m_out << "derived fields\n";
        PrintFields(list, from, to, m_out);
    }
    void Models(const Json& models)
    {
        if (m_json)
            m_json->Member("models", models);
        else
            PrintModels(models, m_out);
    }
    void Roles(const Json& roles)
    {
        if (m_json)
            m_json->Member("roles", roles);
        else
            PrintRoles(roles, m_out);
    }
    void Parameters(const Json& parameters)
    {
        if (m_json) {
            m_json->Member("parameters", parameters);
            return;
        }
        m_out << "parameters\n";
        PrintParameters(parameters, "  ", m_out);
    }
    void End(const Json& problems)
    {
        if (m_json) {
            m_json->Member("problems", problems);
            m_json->End();
        }
    }

private:
    const InspectOptions& m_options;
    std::ostream& m_out;
    std::unique_ptr<JsonOutput> m_json;
};

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
    // A file is read by the readers as a stream; standard input is taken
    // whole first, so that it can be read again after its document element.
    std::string text;
    std::string error;
    std::ifstream file;
    std::istringstream piped;
    std::istream* in = &piped;
    std::error_code code;
    if (options.file == "-") {
        if (!ReadInput(options.file, text, error)) {
            std::cerr << "zrx inspect: " << options.file << ": " << error << "\n";
            return kExitFailed;
        }
        piped.str(text);
    } else if (std::filesystem::is_directory(options.file, code)) {
        std::cerr << "zrx inspect: " << options.file << ": is a folder\n";
        return kExitFailed;
    } else {
        file.open(options.file, std::ios::binary);
        if (!file) {
            std::cerr << "zrx inspect: " << options.file << ": can't open\n";
            return kExitFailed;
        }
        in = &file;
    }
    std::string root;
    ZRXPrsUtil::GetDocumentElementTag(*in, root);
    in->clear();
    in->seekg(0);

    Problems problems;
    ZRMTD_NAMESPACE::ZRVarList variables;
    Report report(options, std::cout);
    if (root == "DataModel") {
        // The DataModel reader takes the document's text.
        if (options.file != "-" && !ReadInput(options.file, text, error)) {
            std::cerr << "zrx inspect: " << options.file << ": " << error << "\n";
            return kExitFailed;
        }
        ZRXPrsUtil::ZRDataModelParser reader;
        reader.SetFieldsInDOM(false);
        ZRCommon::ZRStatus status = reader.ParseToDOM(text);
        if (!status.IsOK())
            return Fail(options.file, status, "");
        status = reader.FillVarList(variables, false, false, 0);
        if (!status.IsOK())
            problems.Add("field " + std::to_string(variables.Size() + 1), status);
        report.Begin("DataModel", nullptr, variables.Size(), -1);
        report.Fields("fields", variables, 0, variables.Size());
    } else {
        ZRSettingsParser reader;
        reader.SetParametersRequired(false);
        reader.SetFieldsInDOM(false);
        reader.SetReadModelBodies(false);
        ZRCommon::ZRStatus status = reader.ParseToDOM(*in);
        if (!status.IsOK())
            return Fail(options.file, status, reader.GetXercesMessage());
        const Json version = AttributeJson(*reader.GetRootElement(), "version");
        const DOMElement* parameters = reader.GetParametersElement();
        if (parameters == nullptr) {
            ZRXPrsUtil::ZRPMMLParser& pmml = reader;
            status = pmml.FillVarList(variables, {}, false);
            if (!status.IsOK())
                problems.Add("field " + std::to_string(variables.Size() + 1), status);
            report.Begin("PMML", &version, variables.Size(), -1);
            report.Fields("fields", variables, 0, variables.Size());
            report.Models(ModelsJson(reader, problems));
        } else {
            status = reader.FillVarList(variables, false);
            const std::size_t fields = variables.Size();
            if (!status.IsOK())
                problems.Add("field " + std::to_string(fields + 1), status);
            else if (!(status = reader.FillTransDict(variables)).IsOK())
                problems.Add("derived field " + std::to_string(variables.Size() - fields + 1),
                             status);
            report.Begin("settings", &version, fields,
                         static_cast<long>(variables.Size() - fields));
            report.Fields("fields", variables, 0, fields);
            report.Fields("derivedFields", variables, fields, variables.Size());
            report.Roles(RolesJson(reader, problems));
            report.Parameters(ParametersJson(reader, *parameters, nullptr, "", problems));
        }
    }
    report.End(problems.list);
    std::cout.flush();
    for (const Json& problem : problems.list)
        std::cerr << "zrx inspect: " << options.file << ": " << problem["where"].get<std::string>()
                  << ": status " << problem["status"].get<long>() << ": "
                  << problem["meaning"].get<std::string>() << "\n";
    return kExitOK;
}

} // namespace zrx
