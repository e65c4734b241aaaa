// Test support for the conditions of a host process: deep documents, threads
// with small stacks, per-test folders.
#ifndef ZRX_HOST_TEST_SUPPORT_H
#define ZRX_HOST_TEST_SUPPORT_H

#include "ZRXTestDom.h"

#include <pthread.h>
#include <unistd.h>

#include <cstddef>
#include <functional>
#include <string>

namespace zrxhost {

// The document element is level 1.
inline std::string Nest(const std::string& open, const std::string& close, int levels,
                        const std::string& inner = std::string())
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += open;
    text += inner;
    for (int i = 0; i < levels; ++i)
        text += close;
    return text;
}

// A PMML TreeModel whose deepest Node is at level `depth` (PMML 1,
// TreeModel 2, nested Nodes 3 to depth), with one field and its statistics.
inline std::string DeepPMML(int depth)
{
    return "<PMML version=\"4.4\"><Header copyright=\"c\"/>"
           "<DataDictionary numberOfFields=\"1\">"
           "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/>"
           "</DataDictionary>"
           "<TreeModel functionName=\"regression\"><MiningSchema><MiningField name=\"x\"/>"
           "</MiningSchema><ModelStats><UnivariateStats field=\"x\"><Counts totalFreq=\"3\"/>"
           "<NumericInfo minimum=\"0\" maximum=\"1\" mean=\"0.5\"/>"
           "<ContStats><Interval closure=\"closedOpen\" leftMargin=\"0\" rightMargin=\"1\"/>"
           "<Array type=\"real\">3</Array></ContStats></UnivariateStats></ModelStats>" +
           Nest("<Node score=\"1\">", "</Node>", depth - 2) + "</TreeModel></PMML>";
}

// A settings document whose innermost Parameter is at level `depth`: PMML 1,
// MiningBuildTask 2, Extension 3, Parameters 4, ComplexParameter "g" 5 to
// depth - 1.
inline std::string DeepSettings(int depth)
{
    return "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"1\">"
           "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/></DataDictionary>"
           "<MiningBuildTask><Extension name=\"settings\"><Parameters>"
           "<Parameter name=\"top\" type=\"int\" value=\"7\"/>" +
           Nest("<ComplexParameter name=\"g\">", "</ComplexParameter>", depth - 5,
                "<Parameter name=\"leaf\" type=\"int\" value=\"5\"/>") +
           "</Parameters></Extension></MiningBuildTask></PMML>";
}

// A DataModel whose deepest element is at level `depth`: DataModel 1,
// Fields 2, Field 3, nested Range elements 4 to depth.
inline std::string DeepDataModel(int depth)
{
    return "<DataModel><Fields>"
           "<Field name=\"f\" storage=\"integer\" measure=\"continuous\">" +
           Nest("<Range minValue=\"0\" maxValue=\"1\">", "</Range>", depth - 3) +
           "</Field></Fields></DataModel>";
}

// Runs `work` on a new thread with a stack of `bytes` and waits for it. False
// if the thread can't be made.
inline bool RunWithStack(const std::function<void()>& work, std::size_t bytes)
{
#if defined(__SANITIZE_THREAD__)
    // ThreadSanitizer keeps its state of each thread (some 800 KB) in static
    // TLS, which glibc carves from the top of the thread's stack: it is added
    // so that the code under test still gets `bytes`.
    bytes += std::size_t(1) << 20;
#endif
    pthread_attr_t attr;
    if (pthread_attr_init(&attr) != 0)
        return false;
    pthread_attr_setstacksize(&attr, bytes);
    auto call = [](void* arg) -> void* {
        (*static_cast<const std::function<void()>*>(arg))();
        return nullptr;
    };
    pthread_t thread;
    const int made =
        pthread_create(&thread, &attr, call, const_cast<std::function<void()>*>(&work));
    pthread_attr_destroy(&attr);
    if (made != 0)
        return false;
    return pthread_join(thread, nullptr) == 0;
}

using zrxtest::TempDir;

} // namespace zrxhost

#endif
