// A variable list as text, for the fuzz targets that read one input in two
// ways and must get the same list: every variable with its name, label,
// kind, role, storage, range, values, labels, missing values and the calls
// on its encoder in order.
#ifndef ZRX_FUZZ_FUZZVARLIST_H
#define ZRX_FUZZ_FUZZVARLIST_H

#include <zrcommonr/ZRVarList.h>

#include <locale>
#include <sstream>
#include <string>

inline std::string VarListText(ZRMTD_NAMESPACE::ZRVarList& list)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(17);
    for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
        const ZRMTD_NAMESPACE::IZRVariable& var = *list.GetVarAt(i);
        const ZRMTD_NAMESPACE::IZREncoder& encoder = *list.GetEncoderAt(i);
        out << var.GetName() << '|' << var.GetLabel() << '|' << var.GetVarType() << var.GetRole()
            << var.GetValueFormat() << '|' << var.GetMinimum() << ':' << var.GetMaximum() << '|';
        for (int v = 0; v < encoder.GetNValues(); ++v)
            out << encoder.GetValueText(v) << ',';
        for (const std::string& label : encoder.GetValueLabels())
            out << label << ',';
        for (const auto& [value, label] : encoder.GetNumericMissing())
            out << value << '=' << label << ',';
        for (const auto& [value, label] : encoder.GetStringMissing())
            out << value << '=' << label << ',';
        for (double cut : var.GetCutPoints())
            out << cut << ',';
        for (const std::string& call : encoder.GetCallOrder())
            out << call << ',';
        out << '\n';
    }
    return out.str();
}

#endif
