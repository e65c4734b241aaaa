// The in-memory variable list that the readers fill and the combiner reads:
// ZRVarList, its variables (IZRVariable) and their value encoders (IZREncoder).
#ifndef ZRCOMMONR_ZRVARLIST_H
#define ZRCOMMONR_ZRVARLIST_H

#include <zrcommonr/ZRCommonExport.h>
#include <zrcommonr/ZRNamespaces.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ZRMTD_NAMESPACE {

// The value side of a variable: its value texts, value and bin labels, and
// the values that count as missing. Every setter stores what it is given;
// every stored item can be read back.
class ZRCOMMON_API IZREncoder {
public:
    virtual ~IZREncoder();

    // The text of value `index` (0 .. number of values - 1): the string value
    // of a text-valued variable, or the shortest round-trip text of a number
    // (ZRXML_NAMESPACE::Format). Empty for an index out of range.
    virtual std::string GetValueText(int index) const = 0;
    // Replaces the bin labels of a binned continuous variable.
    virtual void SetBinLabels(const std::vector<std::string>& labels) = 0;
    // Appends a missing value with its label (numeric and text forms).
    virtual void AddMissing(double value, const std::string& label) = 0;
    virtual void AddMissing(const std::string& value, const std::string& label) = 0;
    // Sets the range [lower, upper] of values that count as missing.
    virtual void SetMissingRange(double lower, double upper) = 0;

    // Read access to everything stored.
    virtual int GetNValues() const = 0;
    virtual const std::vector<double>& GetNumericValues() const = 0;
    virtual const std::vector<std::string>& GetStringValues() const = 0;
    virtual const std::vector<std::string>& GetValueLabels() const = 0;
    virtual const std::vector<std::string>& GetBinLabels() const = 0;
    virtual const std::vector<std::pair<double, std::string>>& GetNumericMissing() const = 0;
    virtual const std::vector<std::pair<std::string, std::string>>& GetStringMissing() const = 0;
    virtual bool HasMissingRange() const = 0;
    virtual double GetMissingRangeLower() const = 0;
    virtual double GetMissingRangeUpper() const = 0;
    // The names of the setters called on this encoder, in call order
    // ("SetBinLabels", "AddMissing", "SetMissingRange"), so that a caller can
    // check the order in which a reader fed it.
    virtual const std::vector<std::string>& GetCallOrder() const = 0;
};

// One variable of a ZRVarList.
class ZRCOMMON_API IZRVariable {
public:
    // The role a variable plays in a model. 5 is an input that the caller
    // asked to mark apart from plain inputs (the readers' "alternate input").
    enum VariableRole {
        eRoleNone = 0,
        eRoleTarget = 2,
        eRoleFreqWeight = 3,
        eRoleInput = 4,
        eRoleAltInput = 5
    };
    // How the values of a weight variable are rounded before use.
    enum WRoundingOption { eNoRounding = 0, eRoundDown = 1, eRoundNearest = 2 };
    // Kinds answered by GetVarType.
    enum VarType { eContinuous = 1, eCategoricalNumeric = 2, eCategoricalString = 3 };

    virtual ~IZRVariable();

    // 1 continuous (also a weight variable), 2 categorical numeric,
    // 3 categorical string.
    virtual int GetVarType() const = 0;
    virtual std::string GetName() const = 0;
    virtual std::string GetLabel() const = 0;
    virtual int GetNValues() const = 0;
    // The storage code given by SetStorageType; 0 until one is given.
    // 1 integer, 2 real, 3 string, 4 date, 5 time, 6 timestamp.
    virtual int GetValueFormat() const = 0;
    virtual void SetStorageType(int storageCode) = 0;
    virtual IZREncoder* GetEncoder() = 0;
    virtual const IZREncoder* GetEncoder() const = 0;

    virtual void SetName(const std::string& name) = 0;
    virtual void SetLabel(const std::string& label) = 0;

    // Read access to the rest of what the add call stored.
    virtual int GetRole() const = 0;
    virtual double GetMinimum() const = 0; // lowest finite double if not given
    virtual double GetMaximum() const = 0; // highest finite double if not given
    virtual bool GetUseBins() const = 0;   // the flag of the add call
    virtual int GetBinCount() const = 0;   // -1 if not given
    virtual const std::vector<double>& GetCutPoints() const = 0; // inner cut points
    virtual bool IsWeight() const = 0;                           // made by SetWeightVar
    virtual int GetWeightRounding() const = 0; // the WRoundingOption, -1 if not a weight
};

// An ordered list of variables. Every add returns the index of the new
// variable, or -1 when the list refuses it: a name that is already in the
// list, or a labelled add whose labels are not one per value.
class ZRCOMMON_API ZRVarList {
public:
    ZRVarList();
    ~ZRVarList();
    ZRVarList(const ZRVarList&) = delete;
    ZRVarList& operator=(const ZRVarList&) = delete;

    int AddCatVar(const std::string& name, const std::string& label,
                  const std::vector<double>& values, IZRVariable::VariableRole role);
    int AddCatVar(const std::string& name, const std::string& label,
                  const std::vector<std::string>& values, IZRVariable::VariableRole role);
    int AddCatVar(const std::string& name, const std::string& label,
                  const std::vector<double>& values, const std::vector<std::string>& labels,
                  IZRVariable::VariableRole role);
    int AddCatVar(const std::string& name, const std::string& label,
                  const std::vector<std::string>& values, const std::vector<std::string>& labels,
                  IZRVariable::VariableRole role);

    int AddContVar(const std::string& name, const std::string& label,
                   IZRVariable::VariableRole role);
    int AddContVar(const std::string& name, const std::string& label, double minimum,
                   double maximum, IZRVariable::VariableRole role, bool useBins, int binCount);
    // `cutPoints` are the inner bin boundaries between minimum and maximum;
    // the flag says that the variable is binned and is always true.
    int AddContVar(const std::string& name, const std::string& label, double minimum,
                   double maximum, const std::vector<double>& cutPoints, bool binned,
                   IZRVariable::VariableRole role);

    // Adds the frequency weight variable: continuous, role 3.
    int SetWeightVar(const std::string& name, const std::string& label,
                     IZRVariable::WRoundingOption rounding);

    // The variable at `index`, null out of range.
    IZRVariable* GetVarAt(int index);
    const IZRVariable* GetVarAt(int index) const;
    // The encoder of the variable at `index`. Never null: out of range it is
    // a spare encoder of the list that belongs to no variable.
    IZREncoder* GetEncoderAt(int index);

    std::size_t Size() const;
    // Index of the variable with that name, -1 if none.
    int FindVar(const std::string& name) const;

    struct Impl; // the list's storage, private to the library

private:
    std::unique_ptr<Impl> m_impl;
};

} // namespace ZRMTD_NAMESPACE

#endif
