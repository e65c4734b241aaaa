// Helpers shared by the subcommands.
#include "zrx.h"

#include <zrcommonr/ZRFormat.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace zrx {

const char* StatusMeaning(long code)
{
    switch (code) {
    case 0: return "OK";
    case 103: return "the XML library can't be started, or a parser can't be made";
    case 104: return "the document can't be parsed";
    case 105: return "no document element, or the wrong one";
    case 106: return "a PMML document without DataDictionary";
    case 107: return "no document parsed yet";
    case 108: return "a required attribute or value is absent";
    case 109: return "an attribute or value is not accepted";
    case 110: return "bins asked for, none for a continuous field";
    case 111: return "the variable list refused a variable";
    case 112: return "no model chosen for the statistics";
    case 113: return "a required child element is absent";
    case 114: return "bad frequencies";
    case 115: return "intervals that don't fit";
    case 116: return "invalid statistics";
    case 118: return "a document can't be written";
    case 119: return "a settings document without MiningBuildTask/Extension/Parameters";
    case 120: return "no parameter of that name in the scope";
    case 121: return "one value asked of a list";
    case 122: return "a list without ListValue";
    case 123: return "the parameter holds no value";
    case 124: return "split model with another functionName";
    case 125: return "split model that is a MiningModel";
    case 126: return "split values that don't match the split variables";
    default: return "unknown status";
    }
}

bool ReadInput(const std::string& path, std::string& text, std::string& error)
{
    if (path == "-") {
        std::ostringstream buffer;
        buffer << std::cin.rdbuf();
        if (std::cin.bad()) {
            error = "can't read standard input";
            return false;
        }
        text = buffer.str();
        return true;
    }
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) {
        error = "is a folder";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "can't open";
        return false;
    }
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        error = "can't read";
        return false;
    }
    return true;
}

std::string NumberText(double value)
{
    return ZRXML_NAMESPACE::Format(value, false, nullptr);
}

} // namespace zrx
