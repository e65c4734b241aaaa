// Step 1 of the example job: the data set description read through the
// library into a variable list, printed as a table.
#include "steps.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrcommonr/ZRFormat.h>
#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRVarList.h>

#include <fstream>
#include <limits>
#include <sstream>

namespace {

using ZRMTD_NAMESPACE::IZRVariable;

// `text` followed by blanks up to `width` characters (not bytes: labels may
// hold any UTF-8 text), and always one blank.
std::string Pad(const std::string& text, std::size_t width)
{
    std::size_t chars = 0;
    for (unsigned char c : text)
        chars += (c & 0xC0) != 0x80;
    return text + std::string(chars < width ? width - chars : 1, ' ');
}

const char* KindName(const IZRVariable& v)
{
    if (v.IsWeight())
        return "weight";
    switch (v.GetVarType()) {
    case IZRVariable::eContinuous: return "continuous";
    case IZRVariable::eCategoricalNumeric: return "cat-number";
    case IZRVariable::eCategoricalString: return "cat-text";
    default: return "?";
    }
}

const char* StorageName(int code)
{
    static const char* const names[] = {"?",    "integer", "real",     "string",
                                        "date", "time",    "timestamp"};
    return code >= 1 && code <= 6 ? names[code] : names[0];
}

const char* RoleName(int role)
{
    switch (role) {
    case IZRVariable::eRoleTarget: return "target";
    case IZRVariable::eRoleFreqWeight: return "weight";
    case IZRVariable::eRoleInput: return "input";
    case IZRVariable::eRoleAltInput: return "input*";
    default: return "-";
    }
}

std::string Bound(double value, double open)
{
    if (value == open)
        return "*";
    if (ZRMV::IsMissing(value))
        return "missing";
    return ZRXML_NAMESPACE::Format(value, false, nullptr);
}

std::string RangeText(const IZRVariable& v)
{
    if (v.GetVarType() != IZRVariable::eContinuous || v.IsWeight())
        return "";
    return "[" + Bound(v.GetMinimum(), std::numeric_limits<double>::lowest()) + ", " +
           Bound(v.GetMaximum(), std::numeric_limits<double>::max()) + "]";
}

} // namespace

int DataModelStep(const std::string& dataDir, std::ostream& out)
{
    const std::string path = dataDir + "/job.datamodel.xml";
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) {
        out << "data model: can't read " << path << "\n";
        return 1;
    }

    ZRXPrsUtil::ZRDataModelParser parser;
    ZRMTD_NAMESPACE::ZRVarList list;
    ZRCommon::ZRStatus status = parser.ParseToDOM(text.str());
    if (status.IsOK())
        status = parser.FillVarList(list, false, false, 0);
    if (!status.IsOK()) {
        out << "data model: status " << status.GetCode() << " reading " << path << "\n";
        return 1;
    }

    out << "data model: " << list.Size() << " variables from " << path << "\n";
    out << Pad("name", 14) << Pad("label", 26) << Pad("kind", 12) << Pad("storage", 10)
        << Pad("role", 8) << Pad("values", 8) << Pad("labels", 8) << "range\n";
    for (std::size_t i = 0; i < list.Size(); ++i) {
        const IZRVariable& v = *list.GetVarAt(static_cast<int>(i));
        out << Pad(v.GetName(), 14) << Pad(v.GetLabel(), 26) << Pad(KindName(v), 12)
            << Pad(StorageName(v.GetValueFormat()), 10) << Pad(RoleName(v.GetRole()), 8)
            << Pad(std::to_string(v.GetNValues()), 8)
            << Pad(std::to_string(v.GetEncoder()->GetValueLabels().size()), 8) << RangeText(v)
            << "\n";
    }
    return 0;
}
