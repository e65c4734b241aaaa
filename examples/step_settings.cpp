// The job's settings: the variables of both dictionaries, the roles, and
// every build parameter, groups included.
#include "steps.h"

#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrcommonr/ZRMV.h>

#include <fstream>
#include <sstream>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using ZRXPrsUtil::ZRSettingsParser;

std::string Number(double value)
{
    if (value == std::numeric_limits<double>::lowest())
        return "-open";
    if (value == std::numeric_limits<double>::max())
        return "+open";
    if (ZRMV::IsMissing(value))
        return "missing";
    std::ostringstream text;
    text.precision(15);
    text << value;
    return text.str();
}

template <class T>
std::string Join(const std::vector<T>& items)
{
    std::string text;
    for (const T& item : items) {
        if (!text.empty())
            text += ", ";
        if constexpr (std::is_same_v<T, std::string>)
            text += item;
        else
            text += Number(item);
    }
    return text;
}

void PrintVariables(const ZRMTD_NAMESPACE::ZRVarList& list, std::ostream& out)
{
    static const char* const kinds[] = {"?", "continuous", "categorical numeric",
                                        "categorical string"};
    for (std::size_t i = 0; i < list.Size(); ++i) {
        const ZRMTD_NAMESPACE::IZRVariable* variable = list.GetVarAt(static_cast<int>(i));
        const ZRMTD_NAMESPACE::IZREncoder* encoder = variable->GetEncoder();
        const int kind = variable->GetVarType();
        out << "  " << variable->GetName() << " \"" << variable->GetLabel() << "\" "
            << kinds[kind >= 1 && kind <= 3 ? kind : 0] << ", storage "
            << variable->GetValueFormat();
        if (kind == 1)
            out << ", range " << Number(variable->GetMinimum()) << " .. "
                << Number(variable->GetMaximum());
        else
            out << ", " << variable->GetNValues() << " values";
        if (!encoder->GetValueLabels().empty())
            out << " (" << Join(encoder->GetValueLabels()) << ")";
        const std::size_t missing =
            encoder->GetNumericMissing().size() + encoder->GetStringMissing().size();
        if (missing > 0)
            out << ", " << missing << " missing";
        if (encoder->HasMissingRange())
            out << ", invalid " << Number(encoder->GetMissingRangeLower()) << " .. "
                << Number(encoder->GetMissingRangeUpper());
        out << "\n";
    }
}

std::string Code(const ZRCommon::ZRStatus& status)
{
    return status.IsOK() ? std::string() : " [status " + std::to_string(status.GetCode()) + "]";
}

void PrintRoles(const ZRSettingsParser& parser, std::ostream& out)
{
    using ListQuery = ZRCommon::ZRStatus (ZRSettingsParser::*)(std::vector<std::string>&) const;
    const std::pair<const char*, ListQuery> roles[] = {
        {"targets", &ZRSettingsParser::GetTargetVars},
        {"predictors", &ZRSettingsParser::GetPredictors},
        {"categorical predictors", &ZRSettingsParser::GetCatPredictors},
        {"continuous predictors", &ZRSettingsParser::GetContPredictors},
        {"categorical responses", &ZRSettingsParser::GetCatResponseVars},
        {"continuous responses", &ZRSettingsParser::GetContResponseVars},
    };
    for (const auto& [title, query] : roles) {
        std::vector<std::string> names;
        const ZRCommon::ZRStatus status = (parser.*query)(names);
        out << "  " << title << ": " << Join(names) << Code(status) << "\n";
    }
    std::string weight;
    const ZRCommon::ZRStatus status = parser.GetFrequencyWeight(weight);
    out << "  frequency weight: " << weight << Code(status) << "\n";
}

// The parameters of the job as the engine knows them: a settings document
// names its parameters, it does not list them, so the reader asks by name.
struct ParameterName {
    const char* name;
    enum Kind { Scalar, List, Matrix, Group } kind;
    const ParameterName* members; // of a group, closed by a null name
};

const ParameterName kHoldout[] = {
    {"sampleShare", ParameterName::Scalar, nullptr},
    {"sampleSeed", ParameterName::Scalar, nullptr},
    {"keepFields", ParameterName::List, nullptr},
    {nullptr, ParameterName::Scalar, nullptr},
};
const ParameterName kValidation[] = {
    {"method", ParameterName::Scalar, nullptr},   {"folds", ParameterName::Scalar, nullptr},
    {"stratify", ParameterName::Scalar, nullptr}, {"holdout", ParameterName::Group, kHoldout},
    {nullptr, ParameterName::Scalar, nullptr},
};
const ParameterName kOutput[] = {
    {"scoreField", ParameterName::Scalar, nullptr},
    {"probabilityField", ParameterName::Scalar, nullptr},
    {"gainsBins", ParameterName::Matrix, nullptr},
    {nullptr, ParameterName::Scalar, nullptr},
};
const ParameterName kParameters[] = {
    {"modelName", ParameterName::Scalar, nullptr},
    {"growingMethod", ParameterName::Scalar, nullptr},
    {"maxTreeDepth", ParameterName::Scalar, nullptr},
    {"minParentSize", ParameterName::Scalar, nullptr},
    {"minChildSize", ParameterName::Scalar, nullptr},
    {"alphaSplit", ParameterName::Scalar, nullptr},
    {"alphaMerge", ParameterName::Scalar, nullptr},
    {"useBonferroni", ParameterName::Scalar, nullptr},
    {"allowResplit", ParameterName::Scalar, nullptr},
    {"randomSeed", ParameterName::Scalar, nullptr},
    {"profitLevels", ParameterName::List, nullptr},
    {"reportSections", ParameterName::List, nullptr},
    {"misclassificationCosts", ParameterName::Matrix, nullptr},
    {"validation", ParameterName::Group, kValidation},
    {"output", ParameterName::Group, kOutput},
    {nullptr, ParameterName::Scalar, nullptr},
};

std::string Scalar(ZRSettingsParser& parser, const char* name, void* context)
{
    ZRCommon::ZRStatus status;
    switch (parser.GetParameterType(name, context)) {
    case ZRSettingsParser::ParamTypeInteger: {
        int value = 0;
        status = parser.GetParameter(name, value, context);
        return "integer " + std::to_string(value) + Code(status);
    }
    case ZRSettingsParser::ParamTypeDouble: {
        double value = 0.0;
        status = parser.GetParameter(name, value, context);
        return "double " + Number(value) + Code(status);
    }
    case ZRSettingsParser::ParamTypeBoolean: {
        bool value = false;
        status = parser.GetParameter(name, value, context);
        return std::string("boolean ") + (value ? "true" : "false") + Code(status);
    }
    default: {
        std::string value;
        status = parser.GetParameter(name, value, context);
        return "text \"" + value + "\"" + Code(status);
    }
    }
}

int PrintParameters(ZRSettingsParser& parser, const ParameterName* names, void* context,
                    const std::string& indent, std::ostream& out)
{
    int failures = 0;
    for (const ParameterName* p = names; p->name != nullptr; ++p) {
        out << indent << p->name << ": ";
        ZRCommon::ZRStatus status;
        switch (p->kind) {
        case ParameterName::Scalar: out << Scalar(parser, p->name, context) << "\n"; break;
        case ParameterName::List:
            if (parser.GetParameterType(p->name, context) == ZRSettingsParser::ParamTypeDouble) {
                std::vector<double> values;
                status = parser.GetArray(p->name, values, context);
                out << "list [" << Join(values) << "]" << Code(status) << "\n";
            } else {
                std::vector<std::string> values;
                status = parser.GetArray(p->name, values, context);
                out << "list [" << Join(values) << "]" << Code(status) << "\n";
            }
            break;
        case ParameterName::Matrix: {
            std::vector<std::vector<double>> rows;
            status = parser.GetMatrix(p->name, rows, context);
            out << "matrix" << Code(status);
            for (const std::vector<double>& row : rows)
                out << " [" << Join(row) << "]";
            out << "\n";
            break;
        }
        case ParameterName::Group: {
            void* group = parser.GetComplexParameter(p->name, context);
            out << (group != nullptr ? "group" : "group not found") << "\n";
            if (group != nullptr)
                failures += PrintParameters(parser, p->members, group, indent + "  ", out);
            else
                ++failures;
            break;
        }
        }
        if (!status.IsOK())
            ++failures;
    }
    return failures;
}

} // namespace

int SettingsStep(const std::string& dataDir, std::ostream& out)
{
    const std::string path = dataDir + "/job.settings.xml";
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        out << "settings: can't open " << path << "\n";
        return 1;
    }
    ZRSettingsParser parser;
    ZRCommon::ZRStatus status = parser.ParseToDOM(in);
    if (!status.IsOK()) {
        out << "settings: " << path << " not read" << Code(status) << " "
            << parser.GetXercesMessage() << "\n";
        return 1;
    }

    ZRMTD_NAMESPACE::ZRVarList variables;
    status = parser.FillVarList(variables, false);
    const std::size_t fields = variables.Size();
    if (status.IsOK())
        status = parser.FillTransDict(variables);
    if (!status.IsOK()) {
        out << "settings: variables not read" << Code(status) << "\n";
        return 1;
    }
    out << "settings: " << fields << " fields and " << variables.Size() - fields
        << " derived fields\n";
    PrintVariables(variables, out);
    out << "settings: roles\n";
    PrintRoles(parser, out);
    out << "settings: parameters\n";
    const int failures = PrintParameters(parser, kParameters, nullptr, "  ", out);
    return failures == 0 ? 0 : 1;
}
