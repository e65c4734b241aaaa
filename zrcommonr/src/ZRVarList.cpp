#include <zrcommonr/ZRVarList.h>
#include <zrcommonr/ZRFormat.h>

#include "ZRNameIndex.h"

#include <cfloat>

namespace ZRMTD_NAMESPACE {

IZREncoder::~IZREncoder() = default;
IZRVariable::~IZRVariable() = default;

namespace {

// The encoder of one variable: stores every value, label and missing value it
// is given.
class Encoder final : public IZREncoder {
public:
    std::string GetValueText(int index) const override
    {
        if (index < 0)
            return std::string();
        const auto i = static_cast<std::size_t>(index);
        if (!stringValues.empty())
            return i < stringValues.size() ? stringValues[i] : std::string();
        return i < numericValues.size() ? ZRXML_NAMESPACE::Format(numericValues[i], false, nullptr)
                                        : std::string();
    }
    void SetBinLabels(const std::vector<std::string>& labels) override
    {
        binLabels = labels;
        calls.emplace_back("SetBinLabels");
    }
    void AddMissing(double value, const std::string& label) override
    {
        numericMissing.emplace_back(value, label);
        calls.emplace_back("AddMissing");
    }
    void AddMissing(const std::string& value, const std::string& label) override
    {
        stringMissing.emplace_back(value, label);
        calls.emplace_back("AddMissing");
    }
    void SetMissingRange(double lower, double upper) override
    {
        hasRange = true;
        rangeLower = lower;
        rangeUpper = upper;
        calls.emplace_back("SetMissingRange");
    }

    int GetNValues() const override
    {
        return static_cast<int>(stringValues.empty() ? numericValues.size() : stringValues.size());
    }
    const std::vector<double>& GetNumericValues() const override { return numericValues; }
    const std::vector<std::string>& GetStringValues() const override { return stringValues; }
    const std::vector<std::string>& GetValueLabels() const override { return valueLabels; }
    const std::vector<std::string>& GetBinLabels() const override { return binLabels; }
    const std::vector<std::pair<double, std::string>>& GetNumericMissing() const override
    {
        return numericMissing;
    }
    const std::vector<std::pair<std::string, std::string>>& GetStringMissing() const override
    {
        return stringMissing;
    }
    bool HasMissingRange() const override { return hasRange; }
    double GetMissingRangeLower() const override { return rangeLower; }
    double GetMissingRangeUpper() const override { return rangeUpper; }
    const std::vector<std::string>& GetCallOrder() const override { return calls; }

    std::vector<double> numericValues;
    std::vector<std::string> stringValues;
    std::vector<std::string> valueLabels;
    std::vector<std::string> binLabels;
    std::vector<std::pair<double, std::string>> numericMissing;
    std::vector<std::pair<std::string, std::string>> stringMissing;
    bool hasRange = false;
    double rangeLower = -DBL_MAX;
    double rangeUpper = DBL_MAX;
    std::vector<std::string> calls;
};

class Variable;

} // namespace

struct ZRVarList::Impl {
    std::vector<std::unique_ptr<Variable>> variables;
    ZRNameIndex byName;
    Encoder spare;

    int Add(std::unique_ptr<Variable> variable);
    void Rename(int index, const std::string& oldName, const std::string& newName);
    int Find(const std::string& name) const;
    const std::string& NameAt(int index) const;
};

namespace {

class Variable final : public IZRVariable {
public:
    Variable(ZRVarList::Impl& owner, int type, const std::string& name, const std::string& label,
             int role)
        : m_owner(owner), m_type(type), m_name(name), m_label(label), m_role(role)
    {}

    int GetVarType() const override { return m_type; }
    std::string GetName() const override { return m_name; }
    const std::string& Name() const { return m_name; }
    std::string GetLabel() const override { return m_label; }
    int GetNValues() const override { return encoder.GetNValues(); }
    int GetValueFormat() const override { return m_storage; }
    void SetStorageType(int storageCode) override { m_storage = storageCode; }
    IZREncoder* GetEncoder() override { return &encoder; }
    const IZREncoder* GetEncoder() const override { return &encoder; }
    void SetName(const std::string& name) override
    {
        m_owner.Rename(index, m_name, name);
        m_name = name;
    }
    void SetLabel(const std::string& label) override { m_label = label; }

    int GetRole() const override { return m_role; }
    double GetMinimum() const override { return minimum; }
    double GetMaximum() const override { return maximum; }
    bool GetUseBins() const override { return useBins; }
    int GetBinCount() const override { return binCount; }
    const std::vector<double>& GetCutPoints() const override { return cutPoints; }
    bool IsWeight() const override { return weightRounding >= 0; }
    int GetWeightRounding() const override { return weightRounding; }

    Encoder encoder;
    int index = -1;
    double minimum = -DBL_MAX;
    double maximum = DBL_MAX;
    bool useBins = false;
    int binCount = -1;
    std::vector<double> cutPoints;
    int weightRounding = -1;

private:
    ZRVarList::Impl& m_owner;
    int m_type;
    std::string m_name;
    std::string m_label;
    int m_role;
    int m_storage = 0;
};

} // namespace

int ZRVarList::Impl::Add(std::unique_ptr<Variable> variable)
{
    if (!variable)
        return -1;
    const int index = static_cast<int>(variables.size());
    auto nameAt = [this](int i) -> const std::string& { return NameAt(i); };
    // One lookup both refuses a duplicate name and files a new one.
    if (!byName.Insert(variable->Name(), index, nameAt))
        return -1;
    variable->index = index;
    try {
        variables.push_back(std::move(variable));
    } catch (...) {
        byName.Erase(variable->Name(), index, [&](int i) -> const std::string& {
            return i == index ? variable->Name() : NameAt(i);
        });
        throw;
    }
    return index;
}

void ZRVarList::Impl::Rename(int index, const std::string& oldName, const std::string& newName)
{
    // The variable still answers to its old name while it is refiled.
    auto nameAt = [this](int i) -> const std::string& { return NameAt(i); };
    byName.Erase(oldName, index, nameAt);
    byName.Insert(newName, index, nameAt);
}

int ZRVarList::Impl::Find(const std::string& name) const
{
    return byName.Find(name, [this](int i) -> const std::string& { return NameAt(i); });
}

const std::string& ZRVarList::Impl::NameAt(int index) const
{
    return variables[static_cast<std::size_t>(index)]->Name();
}

ZRVarList::ZRVarList() : m_impl(new Impl) {}
ZRVarList::~ZRVarList() = default;

namespace {

template <typename Value>
std::unique_ptr<Variable> MakeCategorical(ZRVarList::Impl& owner, const std::string& name,
                                          const std::string& label,
                                          const std::vector<Value>& values, int role);

template <>
std::unique_ptr<Variable> MakeCategorical(ZRVarList::Impl& owner, const std::string& name,
                                          const std::string& label,
                                          const std::vector<double>& values, int role)
{
    std::unique_ptr<Variable> variable(
        new Variable(owner, IZRVariable::eCategoricalNumeric, name, label, role));
    variable->encoder.numericValues = values;
    return variable;
}

template <>
std::unique_ptr<Variable> MakeCategorical(ZRVarList::Impl& owner, const std::string& name,
                                          const std::string& label,
                                          const std::vector<std::string>& values, int role)
{
    std::unique_ptr<Variable> variable(
        new Variable(owner, IZRVariable::eCategoricalString, name, label, role));
    variable->encoder.stringValues = values;
    return variable;
}

} // namespace

int ZRVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values, IZRVariable::VariableRole role)
{
    return m_impl->Add(MakeCategorical(*m_impl, name, label, values, role));
}

int ZRVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values, IZRVariable::VariableRole role)
{
    return m_impl->Add(MakeCategorical(*m_impl, name, label, values, role));
}

namespace {

// A categorical variable with one label per value; null when they don't pair.
template <typename Value>
std::unique_ptr<Variable> MakeLabelled(ZRVarList::Impl& owner, const std::string& name,
                                       const std::string& label, const std::vector<Value>& values,
                                       const std::vector<std::string>& labels, int role)
{
    if (labels.size() != values.size())
        return nullptr;
    auto variable = MakeCategorical(owner, name, label, values, role);
    variable->encoder.valueLabels = labels;
    return variable;
}

} // namespace

int ZRVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& values, const std::vector<std::string>& labels,
                         IZRVariable::VariableRole role)
{
    return m_impl->Add(MakeLabelled(*m_impl, name, label, values, labels, role));
}

int ZRVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& values,
                         const std::vector<std::string>& labels, IZRVariable::VariableRole role)
{
    return m_impl->Add(MakeLabelled(*m_impl, name, label, values, labels, role));
}

int ZRVarList::AddContVar(const std::string& name, const std::string& label,
                          IZRVariable::VariableRole role)
{
    return m_impl->Add(std::unique_ptr<Variable>(
        new Variable(*m_impl, IZRVariable::eContinuous, name, label, role)));
}

int ZRVarList::AddContVar(const std::string& name, const std::string& label, double minimum,
                          double maximum, IZRVariable::VariableRole role, bool useBins,
                          int binCount)
{
    std::unique_ptr<Variable> variable(
        new Variable(*m_impl, IZRVariable::eContinuous, name, label, role));
    variable->minimum = minimum;
    variable->maximum = maximum;
    variable->useBins = useBins;
    variable->binCount = binCount;
    return m_impl->Add(std::move(variable));
}

int ZRVarList::AddContVar(const std::string& name, const std::string& label, double minimum,
                          double maximum, const std::vector<double>& cutPoints, bool binned,
                          IZRVariable::VariableRole role)
{
    std::unique_ptr<Variable> variable(
        new Variable(*m_impl, IZRVariable::eContinuous, name, label, role));
    variable->minimum = minimum;
    variable->maximum = maximum;
    variable->cutPoints = cutPoints;
    variable->useBins = binned;
    variable->binCount = static_cast<int>(cutPoints.size()) + 1;
    return m_impl->Add(std::move(variable));
}

int ZRVarList::SetWeightVar(const std::string& name, const std::string& label,
                            IZRVariable::WRoundingOption rounding)
{
    std::unique_ptr<Variable> variable(
        new Variable(*m_impl, IZRVariable::eContinuous, name, label, IZRVariable::eRoleFreqWeight));
    variable->weightRounding = rounding;
    return m_impl->Add(std::move(variable));
}

IZRVariable* ZRVarList::GetVarAt(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_impl->variables.size())
        return nullptr;
    return m_impl->variables[static_cast<std::size_t>(index)].get();
}

const IZRVariable* ZRVarList::GetVarAt(int index) const
{
    return const_cast<ZRVarList*>(this)->GetVarAt(index);
}

IZREncoder* ZRVarList::GetEncoderAt(int index)
{
    IZRVariable* variable = GetVarAt(index);
    return variable != nullptr ? variable->GetEncoder() : &m_impl->spare;
}

std::size_t ZRVarList::Size() const
{
    return m_impl->variables.size();
}

int ZRVarList::FindVar(const std::string& name) const
{
    return m_impl->Find(name);
}

} // namespace ZRMTD_NAMESPACE
